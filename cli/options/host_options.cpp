#include "cli/options/host_options.h"

#include "audiounit/control_text.h"
#include "cli/options/complaint.h"
#include "platform/text/nearest_name.h"
#include "platform/text/text_numbers.h"

#include <CLI/App.hpp>
#include <array>
#include <bit>
#include <string_view>

namespace zephyra {

namespace {

constexpr const char* kRightMeter =
    "1 to 64 beats of a bar and the note value of a beat, as in 4/4 or 6/8";

Complaint readType(const TypedHostOptions& typed, bool live, HostOptions& options) {
    options.type = live ? component_type::effect : component_type::instrument;
    options.wetOnly = live;
    if (!typed.as) return {};
    const std::string name = plainName(*typed.as);
    if (name == "instrument")
        options.type = component_type::instrument;
    else if (name == "effect")
        options.type = component_type::effect;
    else if (name == "musiceffect")
        options.type = component_type::musicEffect;
    else
        return wrongValue("--as", *typed.as, "instrument, effect or music-effect");
    if (live && options.isInstrument())
        return Failure{"--live feeds INPUT to an effect; leave it out with --as instrument"};
    options.wetOnly = false;
    return {};
}

Complaint readSeconds(const char* option, ControlId range, const std::optional<std::string>& typed,
                      std::optional<double>& value) {
    if (!typed) return {};
    value = parseNumber(*typed);
    if (!value || !acceptsValue(controlRange(range), static_cast<float>(*value)))
        return wrongValue(option, *typed, "seconds from 0 to 10");
    return {};
}

/// Two texts with separator between them.
std::optional<std::pair<std::string_view, std::string_view>> halves(std::string_view text,
                                                                    char separator) {
    const std::size_t at = text.find(separator);
    if (at == std::string_view::npos) return std::nullopt;
    return std::pair(text.substr(0, at), text.substr(at + 1));
}

Complaint readWholePair(const char* option, const std::optional<std::string>& typed, char separator,
                        std::pair<int, int> low, std::pair<int, int> high, const char* right,
                        std::optional<std::pair<int, int>>& value) {
    if (!typed) return {};
    const auto parts = halves(*typed, separator);
    const auto first = parts ? parseWhole(parts->first) : std::nullopt;
    const auto second = parts ? parseWhole(parts->second) : std::nullopt;
    const auto inside = [](std::uint64_t number, int from, int to) {
        return number >= static_cast<std::uint64_t>(from) &&
               number <= static_cast<std::uint64_t>(to);
    };
    if (!first || !second || !inside(*first, low.first, high.first) ||
        !inside(*second, low.second, high.second))
        return wrongValue(option, *typed, right);
    value = {static_cast<int>(*first), static_cast<int>(*second)};
    return {};
}

Complaint readMusic(const TypedHostOptions& typed, HostOptions& options) {
    if (typed.tempo) {
        options.tempo = parseNumber(*typed.tempo);
        if (!options.tempo || *options.tempo < kLowestTempo || *options.tempo > kHighestTempo)
            return wrongValue("--tempo", *typed.tempo, "beats per minute from 1 to 999");
    }
    if (auto wrong = readWholePair("--meter", typed.meter, '/', {1, 1}, {64, 64}, kRightMeter,
                                   options.meter))
        return wrong;
    if (options.meter && !std::has_single_bit(static_cast<unsigned>(options.meter->second)))
        return wrongValue("--meter", *typed.meter, kRightMeter);
    if (auto wrong = readWholePair(
            "--scan-sync", typed.scanSync, ',', {1, 0}, {64, 16},
            "MEASURES,QUARTERS: 1 to 64 measures of 0 to 16 quarters, as in 2,4", options.scanSync))
        return wrong;
    if (!typed.transport) return {};
    const std::string word = plainName(*typed.transport);
    if (word != "play" && word != "stop")
        return wrongValue("--transport", *typed.transport, "play or stop");
    options.transport = word == "play" ? HostTransport::play : HostTransport::stop;
    return {};
}

Complaint readEchoSync(const TypedHostOptions& typed, HostOptions& options) {
    if (!typed.echoSync) return {};
    const auto parts = halves(*typed.echoSync, ',');
    std::array<std::size_t, 2> sides{};
    const std::array<ControlId, 2> ids = {ControlId::leftSubdivision, ControlId::rightSubdivision};
    for (std::size_t i = 0; i < 2; ++i) {
        const Result<float> found =
            parts ? parseControlValue(ids[i], i == 0 ? parts->first : parts->second)
                  : Result<float>(Failure{});
        if (!found)
            return wrongValue("--echo-sync", *typed.echoSync,
                              "LEFT,RIGHT: two of the note values " +
                                  rangeText(controlRange(ids[i])) + ", as in 1/4,1/8T");
        sides[i] = static_cast<std::size_t>(found.value());
    }
    options.echoSync = {sides[0], sides[1]};
    return {};
}

Complaint readPath(const char* option, const std::optional<std::string>& typed,
                   std::optional<std::filesystem::path>& path) {
    if (typed && typed->empty()) return wrongValue(option, *typed, "a file name");
    if (typed) path = *typed;
    return {};
}

Complaint readFiles(const TypedHostOptions& typed, HostOptions& options) {
    const std::tuple<const char*, const std::optional<std::string>&,
                     std::optional<std::filesystem::path>&>
        paths[] = {{"--sample", typed.sample, options.sample},
                   {"--automate", typed.automation, options.automation},
                   {"--midi", typed.midi, options.midi},
                   {"--state", typed.state, options.state},
                   {"--save-state", typed.saveState, options.saveState}};
    for (const auto& [option, text, path] : paths)
        if (auto wrong = readPath(option, text, path)) return wrong;
    if (options.sample && options.isInstrument())
        return Failure{
            "--sample is for an effect; an instrument's sample is INPUT (add --as effect "
            "to feed INPUT to an effect)"};
    return {};
}

Complaint readDryWet(const TypedHostOptions& typed, HostOptions& options) {
    if (!typed.dryWet) return {};
    const std::optional<double> percent = parseNumber(*typed.dryWet);
    if (!percent || *percent < 0 || *percent > 100)
        return wrongValue("--drywet", *typed.dryWet, "per cent from 0 (dry) to 100 (wet)");
    if (options.isInstrument())
        return Failure{
            "--drywet is for an effect; an instrument has no input to mix with (add --as "
            "effect)"};
    options.dryWet = static_cast<float>(*percent);
    return {};
}

} // namespace

bool HostOptions::isInstrument() const {
    return type == component_type::instrument;
}

void declareHostOptions(CLI::App& command, TypedHostOptions& typed) {
    const auto option = [&command](const char* name, auto& value, const char* placeholder,
                                   const char* help) {
        command.add_option(name, value, help)
            ->option_text(placeholder)
            ->expected(1)
            ->group("Host options");
    };
    option("--as", typed.as, "TYPE",
           "instrument: INPUT is the sample (the default). effect or music-effect: INPUT is the "
           "host's input, live");
    option("--sample", typed.sample, "FILE", "Sample for an effect, with LIVE off");
    option("--drywet", typed.dryWet, "PERCENT",
           "An effect's mix: 0 is the input alone, 50 both, 100 the grains alone");
    option("--tempo", typed.tempo, "BPM", "The host's tempo. Default: 120 when one is needed");
    option("--meter", typed.meter, "N/D", "The host's time signature. Default: 4/4");
    option("--transport", typed.transport, "play|stop",
           "The host's transport from the first block on; it starts the grains, not Play Stop. "
           "Default: none, and the grains start at once");
    option("--scan-sync", typed.scanSync, "MEASURES,QUARTERS",
           "Scan the whole sound in so many measures of so many quarters at the host's tempo, "
           "starting with its transport");
    option("--echo-sync", typed.echoSync, "LEFT,RIGHT",
           "Echo times as note values at the host's tempo, as in 1/4,1/8T; switches the echo on");
    option("--automate", typed.automation, "FILE.csv",
           "The host's automation, a line each: time in seconds or beats (4b), parameter, value, "
           "step or ramp");
    option("--midi", typed.midi, "FILE.mid",
           "Its notes 36 to 84 select the pitch, its bends add up to two semitones, its "
           "controllers move what --learn says, bends too; played at --tempo, else at its own");
    option("--state", typed.state, "FILE", "Start from a saved state (property list)");
    option("--save-state", typed.saveState, "FILE", "Save the state at the end");
    option("--fade-in", typed.fadeIn, "S", "Seconds of the fade at the start. Default: 0.05");
    option("--fade-out", typed.fadeOut, "S",
           "Stop the grains with a fade of S seconds that ends with them");
    command.add_flag("--freeze", typed.freeze, "Hold the scan from the start")
        ->group("Host options");
}

Result<HostOptions> checkHostOptions(const TypedHostOptions& typed, bool live) {
    HostOptions options{};
    options.freeze = typed.freeze;
    if (auto wrong = readType(typed, live, options)) return std::move(*wrong);
    for (const auto step : {readMusic, readEchoSync, readFiles, readDryWet})
        if (auto wrong = step(typed, options)) return std::move(*wrong);
    if (live && options.sample)
        return Failure{"--live cuts the grains from INPUT, --sample from a file; leave one out"};
    if (auto wrong = readSeconds("--fade-in", ControlId::fadeIn, typed.fadeIn, options.fadeIn))
        return std::move(*wrong);
    if (auto wrong = readSeconds("--fade-out", ControlId::fadeOut, typed.fadeOut, options.fadeOut))
        return std::move(*wrong);
    return options;
}

} // namespace zephyra
