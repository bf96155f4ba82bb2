#include "rendering/events/midi_file.h"

#include "platform/files/small_file.h"
#include "rendering/events/midi_tracks.h"
#include "rendering/events/time_order.h"

#include <cstddef>
#include <utility>

namespace zephyra {

namespace {

/// The seconds of ticks, which are asked for in their order.
class TempoMap {
public:
    TempoMap(std::vector<TickedTempo> tempos, std::uint32_t ticksPerBeat)
        : tempos_(std::move(tempos)), ticksPerBeat_(ticksPerBeat) {
        sortBy(&TickedTempo::tick, tempos_); // the last of one tick holds
    }

    double secondsAt(std::uint32_t tick) {
        for (; next_ < tempos_.size() && tempos_[next_].tick <= tick; ++next_) {
            seconds_ = secondsWithin(tempos_[next_].tick);
            tempo_ = tempos_[next_];
        }
        return secondsWithin(tick);
    }

private:
    double secondsWithin(std::uint32_t tick) const {
        return seconds_ + (tick - tempo_.tick) * (tempo_.microseconds / (ticksPerBeat_ * 1e6));
    }

    std::vector<TickedTempo> tempos_;
    double ticksPerBeat_;
    std::size_t next_ = 0;
    TickedTempo tempo_ = {0, 500'000}; // the one that holds, at first 120 beats per minute
    double seconds_ = 0;               // where it began
};

} // namespace

Result<MidiFile> parseMidi(std::string_view bytes, std::optional<double> tempo,
                           const std::string& where) {
    Result<MidiTracks> tracks = readMidiTracks(bytes);
    if (!tracks) return Failure{where + " is no MIDI file that can be read: " + tracks.message()};
    const double ticksPerBeat = tracks.value().ticksPerBeat;
    TempoMap map(std::move(tracks.value().tempos), tracks.value().ticksPerBeat);
    std::vector<TickedMidi>& ticked = tracks.value().messages;
    sortBy(&TickedMidi::tick, ticked);
    MidiFile file;
    file.messages.reserve(ticked.size());
    for (const TickedMidi& message : ticked)
        file.messages.push_back({.seconds = tempo ? message.tick / ticksPerBeat * 60.0 / *tempo
                                                  : map.secondsAt(message.tick),
                                 .length = message.length,
                                 .bytes = message.bytes});
    for (const std::string& notice : tracks.value().notices)
        file.notices.push_back(where + ": " + notice);
    return file;
}

Result<MidiFile> readMidiFile(const std::filesystem::path& path, std::optional<double> tempo,
                              const StreamedFiles& streams) {
    const Result<std::string> bytes = readSmallFile(path, streams);
    if (!bytes) return Failure{bytes.message()};
    return parseMidi(bytes.value(), tempo, inputTitle(path));
}

} // namespace zephyra
