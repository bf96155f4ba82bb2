#include "cli/options/motion_options.h"

#include "cli/options/complaint.h"

#include <CLI/App.hpp>
#include <algorithm>
#include <tuple>

namespace zephyra {

namespace {

Complaint readLfos(const TypedMotionOptions& typed, MotionOptions& options) {
    for (const std::string& text : typed.lfos) {
        const Result<LfoOption> lfo = parseLfo(text);
        if (!lfo) return Failure{"--lfo " + text + ": " + lfo.message()};
        if (options.hasLfo(lfo.value().control))
            return Failure{"--lfo " + text + ": " + controlRange(lfo.value().control).name +
                           " has an LFO already; leave one out"};
        options.lfos.push_back(lfo.value());
    }
    return {};
}

Complaint readLearned(const TypedMotionOptions& typed, MotionOptions& options) {
    for (const std::string& text : typed.learned) {
        const Result<LearnOption> learned = parseLearn(text);
        if (!learned) return Failure{"--learn " + text + ": " + learned.message()};
        const char* const name = controlRange(learned.value().control).name;
        if (options.hasLfo(learned.value().control))
            return Failure{"--learn " + text + ": " + name +
                           " has an LFO; a control follows the one or the other"};
        for (const LearnOption& other : options.learned)
            if (other.control == learned.value().control &&
                other.binding.trigger == learned.value().binding.trigger)
                return Failure{"--learn " + text + ": " + name +
                               " learned that already; leave one out"};
        options.learned.push_back(learned.value());
    }
    return {};
}

Complaint readTakes(const TypedMotionOptions& typed, MotionOptions& options) {
    const std::tuple<const char*, const std::optional<std::string>&,
                     std::optional<std::filesystem::path>&>
        paths[] = {{"--scrub", typed.scrub, options.scrub},
                   {"--record-scrub", typed.recordScrub, options.recordScrub}};
    for (const auto& [option, text, path] : paths) {
        if (text && text->empty()) return wrongValue(option, *text, "a file name");
        if (text) path = *text;
    }
    if (options.scrub && options.hasLfo(ControlId::scrubbingWave))
        return Failure{"--scrub " + options.scrub->string() +
                       ": Scrubbing Wave has an LFO; the scan follows the one or the other"};
    return {};
}

} // namespace

bool MotionOptions::hasLfo(ControlId control) const {
    return std::any_of(lfos.begin(), lfos.end(),
                       [control](const LfoOption& lfo) { return lfo.control == control; });
}

bool MotionOptions::followsTempo() const {
    return std::any_of(lfos.begin(), lfos.end(),
                       [](const LfoOption& lfo) { return lfo.link.has_value(); });
}

void declareMotionOptions(CLI::App& command, TypedMotionOptions& typed) {
    const auto option = [&command](const char* name, auto& value, const char* placeholder,
                                   const char* help) {
        return command.add_option(name, value, help)
            ->option_text(placeholder)
            ->expected(1)
            ->group("Motion options");
    };
    const auto repeated = [&option](const char* name, auto& value, const char* placeholder,
                                    const char* help) {
        option(name, value, placeholder, help)
            ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
            ->allow_extra_args(false);
    };
    repeated("--lfo", typed.lfos, "CONTROL:KEY=VALUE,...",
             "An LFO on a control, or on \"Scrubbing Wave\", the scan. shape: sine, square, v, "
             "rise, fall, random, random_interp; hz: 0.016 to 24, or link: a note value at the "
             "host's tempo, mult: so many of them; min, max: fractions of the control's range; "
             "gravity: 0 jumps, 1 hardly follows; phase: 0 to 1. Default: sine, 0.25 Hz, the "
             "whole range, from where the control stands. May be given often");
    option(
        "--scrub", typed.scrub, "FILE.csv",
        "Move the scan by a take, over and over: a position from 0 to 1 a line, 15 a second, with "
        "--scan-sync 15 in two beats");
    option("--record-scrub", typed.recordScrub, "FILE.csv",
           "Keep how the scan moves, up to 120 s, as a take for --scrub");
    repeated("--learn", typed.learned, "SOURCE=CONTROL,...",
             "What a controller of the --midi file moves. SOURCE: cc:N, cc14:N, bend, note:N "
             "(its velocity) or pressure. Then, if need be: min, max: fractions of the control's "
             "range; curve: 0.1 to 10; channel: 1 to 16; takeover: jump (the default) or pickup; "
             "relative=yes: a bend adds to where the control stands. May be given often");
}

Result<MotionOptions> checkMotionOptions(const TypedMotionOptions& typed, bool hasMidi) {
    MotionOptions options;
    for (const auto step : {readLfos, readLearned, readTakes})
        if (auto wrong = step(typed, options)) return std::move(*wrong);
    if (!hasMidi && !typed.learned.empty())
        return Failure{"--learn " + typed.learned.front() +
                       " has no controllers to follow; add --midi FILE.mid"};
    return options;
}

} // namespace zephyra
