#include "audiounit/control_text.h"
#include "cli/options/render_options.h"
#include "platform/text/names.h"
#include "platform/text/text_numbers.h"

#include <bit>
#include <string_view>

namespace zephyra {

namespace {

using Read = OptionReader::Read;
using Texts = std::pair<std::string_view, std::string_view>;

constexpr const char* kRightMeter =
    "1 to 64 beats of a bar and the note value of a beat, as in 4/4 or 6/8";
constexpr const char* kRightScanSync =
    "MEASURES,QUARTERS: 1 to 64 measures of 0 to 16 quarters, as in 2,4";

Read typeInto(std::optional<FourCharCode>& type) {
    return [&type](const char* option, const std::string& text) -> Complaint {
        const std::string name = plainName(text);
        if (name == "instrument")
            type = component_type::instrument;
        else if (name == "effect")
            type = component_type::effect;
        else if (name == "musiceffect")
            type = component_type::musicEffect;
        else
            return wrongValue(option, text, "instrument, effect or music-effect");
        return {};
    };
}

/// Two texts with separator between them.
std::optional<Texts> halves(std::string_view text, char separator) {
    const std::size_t at = text.find(separator);
    if (at == std::string_view::npos) return std::nullopt;
    return Texts(text.substr(0, at), text.substr(at + 1));
}

/// Two whole numbers from low to high each.
std::optional<std::pair<int, int>> wholePair(std::string_view text, char separator,
                                             std::pair<int, int> low, std::pair<int, int> high) {
    const auto parts = halves(text, separator);
    if (!parts) return std::nullopt;
    const auto number = [](std::string_view part, int from, int to) -> std::optional<int> {
        const auto whole = parseWhole(part);
        if (!whole || *whole > static_cast<std::uint64_t>(to)) return std::nullopt;
        const int value = static_cast<int>(*whole);
        return value < from ? std::nullopt : std::optional(value);
    };
    const auto first = number(parts->first, low.first, high.first);
    const auto second = number(parts->second, low.second, high.second);
    if (!first || !second) return std::nullopt;
    return std::pair(*first, *second);
}

Read meterInto(std::optional<std::pair<int, int>>& meter) {
    return [&meter](const char* option, const std::string& text) -> Complaint {
        meter = wholePair(text, '/', {1, 1}, {64, 64});
        if (meter && std::has_single_bit(static_cast<unsigned>(meter->second))) return {};
        return wrongValue(option, text, kRightMeter);
    };
}

Read scanSyncInto(std::optional<std::pair<int, int>>& sync) {
    return [&sync](const char* option, const std::string& text) -> Complaint {
        sync = wholePair(text, ',', {1, 0}, {64, 16});
        if (sync) return {};
        return wrongValue(option, text, kRightScanSync);
    };
}

Read transportInto(std::optional<HostTransport>& transport) {
    return [&transport](const char* option, const std::string& text) -> Complaint {
        const std::string word = plainName(text);
        if (word != "play" && word != "stop") return wrongValue(option, text, "play or stop");
        transport = word == "play" ? HostTransport::play : HostTransport::stop;
        return {};
    };
}

Read freezeInto(HostRequest& host) {
    return [&host](const char* option, const std::string& text) -> Complaint {
        host.freeze = true;
        if (text.empty()) return {};
        return secondsInto(host.freezeSeconds, host, 0, kMostSeconds,
                           "seconds from 0 to 86400 (a day), or a time as in 1:30 or 8b")(option,
                                                                                          text);
    };
}

Read echoSyncInto(std::optional<std::pair<std::size_t, std::size_t>>& sync) {
    return [&sync](const char* option, const std::string& text) -> Complaint {
        const auto parts = halves(text, ',').value_or(Texts());
        const auto left = parseControlValue(ControlId::leftSubdivision, parts.first);
        const auto right = parseControlValue(ControlId::rightSubdivision, parts.second);
        if (!left || !right)
            return wrongValue(option, text,
                              "LEFT,RIGHT: two of the note values " +
                                  rangeText(controlRange(ControlId::leftSubdivision)) +
                                  ", as in 1/4,1/8T");
        sync.emplace(left.value(), right.value());
        return {};
    };
}

} // namespace

void declareTempo(OptionReader& reader, HostRequest& host) {
    reader.beginGroup("Tempo and host");
    reader.add("--tempo", "BPM", "The host's tempo. Default: 120 when one is needed",
               numberInto(host.tempo, "bpm", kLowestTempo, kHighestTempo,
                          "beats per minute from 1 to 999"));
}

void declareFades(OptionReader& reader, HostRequest& host) {
    constexpr double kMost = 10; // both ends belong to it, as in the controls
    constexpr const char* kRight = "seconds from 0 to 10";
    reader.add("--fade-in", "TIME", "Length of the fade at the start. Default: 0.05",
               secondsInto(host.fadeIn, host, 0, kMost, kRight));
    reader.add("--fade-out", "TIME",
               "Stop the grains with a fade of this length that ends with them",
               secondsInto(host.fadeOut, host, 0, kMost, kRight));
    reader.addFlag("--freeze", "[TIME]",
                   "Hold the scan from this time on, and of live input what was heard by then. "
                   "Default: from the start; of live input from half of the render on, at most "
                   "10 s",
                   freezeInto(host));
}

void declareLiveOptions(OptionReader& reader, RenderRequest& request) {
    HostRequest& host = request.host;
    reader.beginGroup("Live input and effects");
    reader.addFlag(
        "--live",
        "Feed INPUT to an effect instead of loading it, and hear the grains alone: they come from "
        "the last ten seconds heard. Without a scan setting they follow 0.2 s behind the input",
        request.live);
    reader.add(
        "--as", "TYPE",
        "instrument: INPUT is the sample (the default). effect or music-effect: INPUT is the "
        "host's input, live",
        typeInto(host.type));
    reader.add("--sample", "FILE", "Sample for an effect, with LIVE off", pathInto(host.sample));
    reader.add("--drywet", "PERCENT",
               "An effect's mix: 0 is the input alone, 50 both, 100 the grains alone",
               numberInto(host.dryWet, "%", 0, 100, "per cent from 0 (dry) to 100 (wet)"));
}

void declareHostOptions(OptionReader& reader, HostRequest& host) {
    reader.beginGroup("Tempo and host");
    reader.add("--meter", "N/D", "The host's time signature. Default: 4/4", meterInto(host.meter));
    reader.add("--transport", "play|stop",
               "The host's transport from the first block on; it starts the grains, not Play Stop. "
               "Default: none, and the grains start at once",
               transportInto(host.transport));
    reader.add("--scan-sync", "MEASURES,QUARTERS",
               "Scan the whole sound in so many measures of so many quarters at the host's tempo, "
               "starting with its transport",
               scanSyncInto(host.scanSync));
    reader.add(
        "--echo-sync", "LEFT,RIGHT",
        "Echo times as note values at the host's tempo, as in 1/4,1/8T; switches the echo on",
        echoSyncInto(host.echoSync));
    reader.add(
        "--automate", "FILE.csv",
        "The host's automation, a line each: time in seconds or beats (4b), parameter, value, "
        "step or ramp",
        pathInto(host.automation));
    reader.add("--midi", "FILE.mid",
               "Its notes 36 to 84 select the pitch, its bends add up to two semitones, its "
               "controllers move what --learn says, bends too; played at --tempo, else at its own",
               pathInto(host.midi));
    reader.addFlag("--midi-tempo",
                   "The host's tempo and meter change as the --midi file says. Those of --tempo "
                   "and --meter hold until its first; beats of other options stay --tempo's",
                   host.midiTempo);
    reader.addFlag("--programs",
                   "Its program changes choose presets and its bank selects banks, which else are "
                   "left out",
                   host.programs);
}

} // namespace zephyra
