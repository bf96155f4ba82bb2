// InstrumentNotes: starts an instrument's stream with its notes, and ends it with the last of them.
#pragma once

#include "hosting/held_notes.h"
#include "hosting/plugin_settings.h"
#include "stream/stream_controller.h"

#include <cstdint>
#include <memory>

namespace zephyra {

/// Notes end what notes began: what a hand or a host started by Play Stop plays on when keys go up.
/// With Scan Sync on, the host's transport starts the stream, and notes only tune it. Sound off
/// (controller 120) stops it whatever began it. MAIN.
class InstrumentNotes {
public:
    /// stream must outlive this.
    explicit InstrumentNotes(MOK_SCRUB_GRANULATOR& stream) : stream_(stream) {}

    NotesBegin first = NotesBegin::start; ///< what the first key does
    NotesEnd end = NotesEnd::fade;        ///< what the last key does

    /// A message that is bound to nothing. It counts as older than a state that was asked for after
    /// it, and then starts nothing.
    void take(const MidiMessage& message);
    /// A host's event set Play Stop after the messages so far and before those to come: the ones
    /// give way to it, the others wait until it has acted.
    void playStopWasSet();
    /// A state of that number was restored. Whether a note that is newer is still held.
    bool restored(StateOrder::Number asked);
    /// Plays for the notes that are held, which end it.
    void begin();

    /// As if none had come yet: what they began stops at once.
    void startAnew();

private:
    enum class Wish { none, start, fade, silence };

    void wish(Wish wished);
    void settle();
    void settleLater();
    bool playsForNotes() const;
    bool standsBy() const { return stream_.linear(ControlId::playStop) == 0.0f; }

    MOK_SCRUB_GRANULATOR& stream_;
    HeldNotes held_;
    Wish wish_ = Wish::none;
    bool waits_ = false;              // for Play Stop
    std::uint64_t begun_ = 0;         // the stream's start that was the notes'; 0 for none
    StateOrder::Number newest_ = 0;   // of the last note-on
    StateOrder::Number restored_ = 0; // the last state
    std::shared_ptr<const bool> alive_ = std::make_shared<bool>(true); // posted steps look at it
};

} // namespace zephyra
