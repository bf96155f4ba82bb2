#include "rendering/events/midi_file.h"

#include "platform/files/small_file.h"
#include "rendering/events/midi_tracks.h"
#include "rendering/events/time_order.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace zephyra {

namespace {

/// The seconds of ticks, which are asked for in their order.
class TempoMap {
public:
    /// first holds until the first tempo of the file's.
    TempoMap(std::vector<TickedTempo> tempos, std::uint32_t ticksPerBeat, double first)
        : tempos_(std::move(tempos)), ticksPerBeat_(ticksPerBeat), microseconds_(6e7 / first) {
        sortBy(&TickedTempo::tick, tempos_); // the last of one tick holds
    }

    double secondsAt(std::uint32_t tick) {
        for (; next_ < tempos_.size() && tempos_[next_].tick <= tick; ++next_) {
            seconds_ = secondsWithin(tempos_[next_].tick);
            begin_ = tempos_[next_].tick;
            microseconds_ = tempos_[next_].microseconds;
        }
        return secondsWithin(tick);
    }
    /// At the tick that was asked for last, in beats per minute.
    double tempo() const { return 6e7 / microseconds_; }
    const std::vector<TickedTempo>& tempos() const { return tempos_; }

private:
    double secondsWithin(std::uint32_t tick) const {
        return seconds_ + (tick - begin_) * (microseconds_ / (ticksPerBeat_ * 1e6));
    }

    std::vector<TickedTempo> tempos_;
    double ticksPerBeat_;
    double microseconds_; // a beat, at the tempo that holds
    std::size_t next_ = 0;
    std::uint32_t begin_ = 0; // of that tempo
    double seconds_ = 0;      // the same
};

/// Where a tempo or a meter begins; one entry a tick, at which the last of each holds.
std::vector<TimedMusic> musicOf(MidiTracks& tracks, TempoMap map) {
    sortBy(&TickedMeter::tick, tracks.meters);
    std::vector<std::uint32_t> ticks;
    for (const TickedTempo& tempo : map.tempos()) ticks.push_back(tempo.tick);
    for (const TickedMeter& meter : tracks.meters) ticks.push_back(meter.tick);
    std::ranges::sort(ticks);
    ticks.erase(std::unique(ticks.begin(), ticks.end()), ticks.end());
    std::vector<TimedMusic> music;
    auto next = tracks.meters.begin();
    std::optional<std::pair<int, int>> meter;
    for (const std::uint32_t tick : ticks) {
        for (; next != tracks.meters.end() && next->tick <= tick; ++next)
            meter.emplace(next->beats, next->value);
        const double seconds = map.secondsAt(tick);
        music.push_back({.seconds = seconds,
                         .beats = tick / static_cast<double>(tracks.ticksPerBeat),
                         .tempo = map.tempo(),
                         .meter = meter});
    }
    return music;
}

} // namespace

Result<MidiFile> parseMidi(std::string_view bytes, std::optional<double> tempo,
                           const std::string& where, ToldTempo told) {
    Result<MidiTracks> tracks = readMidiTracks(bytes);
    if (!tracks) return Failure{where + " is no MIDI file that can be read: " + tracks.message()};
    const double ticksPerBeat = tracks.value().ticksPerBeat;
    const bool isPlayedAtTold = tempo && told == ToldTempo::holds;
    TempoMap map(std::move(tracks.value().tempos), tracks.value().ticksPerBeat,
                 tempo.value_or(120.0));
    std::vector<TickedMidi>& ticked = tracks.value().messages;
    sortBy(&TickedMidi::tick, ticked);
    MidiFile file;
    if (!isPlayedAtTold) file.music = musicOf(tracks.value(), map);
    file.messages.reserve(ticked.size());
    for (const TickedMidi& message : ticked)
        file.messages.push_back({.seconds = isPlayedAtTold
                                                ? message.tick / ticksPerBeat * 60.0 / *tempo
                                                : map.secondsAt(message.tick),
                                 .length = message.length,
                                 .bytes = message.bytes});
    for (const std::string& notice : tracks.value().notices)
        file.notices.push_back(where + ": " + notice);
    return file;
}

Result<MidiFile> readMidiFile(const std::filesystem::path& path, std::optional<double> tempo,
                              const StreamedFiles& streams, ToldTempo told) {
    const Result<std::string> bytes = readSmallFile(path, streams);
    if (!bytes) return Failure{bytes.message()};
    return parseMidi(bytes.value(), tempo, inputTitle(path), told);
}

} // namespace zephyra
