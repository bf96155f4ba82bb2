#include "hosting/instrument_notes.h"

#include <utility>

namespace zephyra {

void InstrumentNotes::take(const MidiMessage& message) {
    const StateOrder& states = stream_.instance().states;
    const StateOrder::Number sent = states.delivered().value_or(states.now());
    switch (held_.take(message)) {
    case HeldNotes::Change::none:
        return;
    case HeldNotes::Change::began:
        newest_ = sent;
        if (sent >= restored_ && first == NotesBegin::start) wish(Wish::start);
        return;
    case HeldNotes::Change::ended:
        if (end == NotesEnd::fade) wish(Wish::fade);
        return;
    case HeldNotes::Change::silenced:
        return wish(Wish::silence);
    }
}

void InstrumentNotes::playStopWasSet() {
    wish_ = Wish::none;
    waits_ = true;
    settleLater();
}

bool InstrumentNotes::restored(StateOrder::Number asked) {
    restored_ = asked;
    wish_ = Wish::none;
    begun_ = 0; // what plays is the state's
    return first == NotesBegin::start && newest_ >= asked && held_.any();
}

void InstrumentNotes::begin() {
    begun_ = stream_.starts(); // also of what plays
    wish(Wish::start);
}

void InstrumentNotes::startAnew() {
    held_ = {};
    wish_ = Wish::none;
    if (playsForNotes()) stream_.stopAtOnce();
}

void InstrumentNotes::wish(Wish wished) {
    wish_ = wished;
    if (!waits_) settle();
}

/// What is armed waits for the host, whoever began the last start.
bool InstrumentNotes::playsForNotes() const {
    return !standsBy() && !stream_.isArmed() && begun_ != 0 && begun_ == stream_.starts();
}

/// A start shows itself one step later, and cannot be stopped before.
void InstrumentNotes::settle() {
    if (stream_.isStarting()) return settleLater();
    switch (std::exchange(wish_, Wish::none)) {
    case Wish::start:
        if (stream_.controls.syncSampler.isOn() || !standsBy()) return;
        begun_ = stream_.starts() + 1;
        stream_.ui_playStop();
        return;
    case Wish::fade:
        if (playsForNotes()) stream_.ui_playStop();
        return;
    case Wish::silence:
        if (stream_.isPlaying()) stream_.stopWithin(0.0);
        return;
    case Wish::none:
        return;
    }
}

void InstrumentNotes::settleLater() {
    stream_.onMain([this, alive = std::weak_ptr(alive_)] {
        if (alive.expired()) return;
        waits_ = false;
        settle();
    });
}

} // namespace zephyra
