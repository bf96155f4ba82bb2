#include "cli/options/render_options.h"

#include "cli/batch/batch_names.h"
#include "cli/options/complaint.h"
#include "cli/options/file_clashes.h"
#include "engine/envelope_menu.h"
#include "platform/sound/audio_file.h"
#include "platform/text/nearest_name.h"
#include "platform/text/text_numbers.h"

#include <CLI/App.hpp>
#include <algorithm>
#include <limits>
#include <string_view>

namespace zephyra {

namespace fs = std::filesystem;

namespace {

constexpr const char* kSeeHelp = "; see zephyra --help";

Complaint readNumber(const char* option, const std::optional<std::string>& typed, double low,
                     double high, const std::string& right, std::optional<double>& value) {
    if (!typed) return {};
    value = parseNumber(*typed);
    if (!value || *value < low || *value > high) return wrongValue(option, *typed, right);
    return {};
}

Complaint readFraction(const char* option, const std::optional<std::string>& typed,
                       std::optional<float>& value) {
    std::optional<double> number;
    const Complaint wrong =
        readNumber(option, typed, 0, 1, "a fraction of the source from 0 to 1", number);
    if (number) value = static_cast<float>(*number);
    return wrong;
}

Complaint readLengths(const TypedRenderOptions& typed, RenderOptions& options) {
    if (const auto wrong = readNumber("--seconds", typed.seconds, 0, kMostSeconds,
                                      "seconds above 0, up to 86400 (a day)", options.seconds))
        return wrong;
    if (options.seconds == 0.0)
        return wrongValue("--seconds", *typed.seconds, "seconds above 0, up to 86400 (a day)");
    if (const auto wrong = readNumber("--rate", typed.rate, kLowestRate, kHighestRate,
                                      "Hz from 8000 to 384000", options.sampleRate))
        return wrong;
    options.blockFrames = kDefaultBlockFrames;
    if (!typed.block) return {};
    const std::optional<std::uint64_t> frames = parseWhole(*typed.block);
    if (!frames || *frames < 1 || *frames > kMostBlockFrames)
        return wrongValue("--block", *typed.block, "frames, a whole number from 1 to 65536");
    options.blockFrames = static_cast<int>(*frames);
    return {};
}

Complaint readSeed(const TypedRenderOptions& typed, RenderOptions& options) {
    if (!typed.seed) return {};
    const std::optional<std::uint64_t> seed = parseWhole(*typed.seed);
    if (!seed || *seed < 1 || *seed > std::numeric_limits<std::uint32_t>::max())
        return wrongValue("--seed", *typed.seed, "a whole number from 1 to 4294967295");
    options.seed = static_cast<std::uint32_t>(*seed);
    return {};
}

Complaint readSettings(const TypedRenderOptions& typed, RenderOptions& options) {
    for (const std::string& text : typed.settings) {
        const Result<ControlSetting> setting = parseSetting(text);
        if (!setting) return Failure{"--set " + text + ": " + setting.message()};
        options.settings.push_back(setting.value());
    }
    for (const std::string& text : typed.timedSettings) {
        const Result<TimedSetting> setting = parseTimedSetting(text);
        if (!setting) return Failure{"--at " + text + ": " + setting.message()};
        if (options.seconds && setting.value().seconds >= *options.seconds)
            return Failure{"--at " + text + " comes after the end; --seconds is " +
                           formatNumber(*options.seconds)};
        auto& all = options.timedSettings; // each goes behind those of its time and before
        const auto later = std::find_if(all.begin(), all.end(), [&](const TimedSetting& other) {
            return other.seconds > setting.value().seconds;
        });
        all.insert(later, setting.value());
    }
    return {};
}

Complaint readEnvelope(const TypedRenderOptions& typed, RenderOptions& options) {
    if (!typed.envelope) return {};
    const std::optional<std::size_t> found = findEnvelope(*typed.envelope);
    if (!found) {
        constexpr std::string_view kPrefix = "Grain Envelope: ";
        std::vector<std::string_view> names;
        for (const std::string_view entry : kEnvelopeMenu)
            names.push_back(entry.substr(kPrefix.size()));
        return Failure{"--envelope: there is no " + inQuotes(*typed.envelope) +
                       "; the nearest is " + inQuotes(nearestName(*typed.envelope, names)) +
                       " (`zephyra envelopes` lists all)"};
    }
    options.envelope = *found;
    return {};
}

/// What names the file that was given no name: INPUT, else the preset.
std::string ownName(const RenderOptions& options) {
    if (!options.input.empty()) return options.input.stem().string();
    return BatchNames().take(std::nullopt, options.preset->name);
}

/// The type from --type, else from OUT's extension, else WAV; OUT from INPUT's name if need be.
Complaint readOutput(const TypedRenderOptions& typed, RenderOptions& options) {
    const OutputType* type = &defaultOutputType();
    if (typed.type) {
        type = findOutputType(*typed.type);
        if (!type) return wrongValue("--type", *typed.type, kOutputTypeNames);
    }
    if (typed.output) {
        options.output = *typed.output;
        const std::string extension = options.output.extension().string();
        if (options.output.empty()) return wrongValue("-o", "", "a file name");
        if (!typed.type && !extension.empty()) type = findOutputType(extension);
        if (!type)
            return Failure{"-o " + *typed.output + ": no type " + inQuotes(extension) +
                           " can be written; use the extension " + kOutputTypeNames +
                           ", or --type"};
    } else {
        options.output = ownName(options) + "-grains." + type->name;
    }
    options.type = *type;
    if (options.floats && type->code != audio_file_type::wave)
        return Failure{"--float is for WAV only, not " + std::string(type->title) +
                       "; name OUT .wav or leave --float out"};
    return {};
}

Complaint readFiles(const TypedRenderOptions& typed, RenderOptions& options) {
    if (!typed.inputs.empty()) {
        options.input = typed.inputs[0];
        if (options.input.empty()) return Failure{"INPUT is empty; name a sound file"};
    }
    if (const auto wrong = readOutput(typed, options)) return wrong;
    if (!typed.picture) return {};
    options.picture = *typed.picture;
    if (plainName(options.picture->extension().string()) != "png")
        return wrongValue("--picture", *typed.picture, "a file name that ends in .png");
    return {};
}

/// An effect's input is INPUT; an instrument may have its sample from the preset.
Complaint checkSource(const RenderOptions& options) {
    if (!options.input.empty()) return {};
    const std::string preset = "preset " + inQuotes(options.preset->name);
    if (options.preset->live && !options.host.isInstrument())
        return Failure{preset + " listens to live input; name INPUT, a sound file to feed it"};
    if (!options.host.isInstrument())
        return Failure{"an effect needs input; name INPUT, a sound file to feed it"};
    if (!options.preset->hasSound)
        return Failure{preset + " brings no sample; name INPUT, the sound file that it is to play"};
    return {};
}

/// An instrument has no input that LIVE could listen to.
Complaint checkLive(const RenderOptions& options) {
    const auto asksForLive = [](const ControlSetting& setting) {
        return setting.control == ControlId::live && setting.value != 0;
    };
    bool asked = std::any_of(options.settings.begin(), options.settings.end(), asksForLive);
    for (const TimedSetting& timed : options.timedSettings)
        asked = asked || asksForLive(timed.setting);
    for (const LearnOption& learned : options.motion.learned)
        asked = asked || learned.control == ControlId::live;
    if (!asked || !options.host.isInstrument()) return {};
    return Failure{"LIVE is for an effect, which has an input; add --as effect"};
}

/// The host and what moves the controls. A preset that listens to an input makes an effect.
Result<void> readHost(const TypedRenderOptions& typed, RenderOptions& options) {
    TypedHostOptions typedHost = typed.host;
    options.isEffectOfPreset =
        options.preset && options.preset->live && !typedHost.as && !typed.live;
    if (options.isEffectOfPreset) typedHost.as = "effect";
    Result<HostOptions> host = checkHostOptions(typedHost, typed.live);
    if (!host) return Failure{host.message()};
    options.host = std::move(host.value());
    Result<MotionOptions> motion = checkMotionOptions(typed.motion, options.host.midi.has_value());
    if (!motion) return Failure{motion.message()};
    options.motion = std::move(motion.value());
    options.host.tempoIsFollowed = options.motion.followsTempo();
    return {};
}

/// A word that stands where only one sound file is expected.
Failure surplus(const std::string& word) {
    const std::string quoted = inQuotes(word);
    const std::size_t sign = word.find('=');
    if (sign == std::string::npos)
        return {quoted + " is one file too many; one is taken at a time, several with --out-dir" +
                kSeeHelp};
    return {quoted + " stands alone; write " +
            (word.find(':') < sign ? "--lfo, --learn or --at before it"
                                   : "--set before each NAME=VALUE") +
            kSeeHelp};
}

} // namespace

void declareRenderOptions(CLI::App& command, TypedRenderOptions& typed) {
    command
        .add_option("INPUT", typed.inputs,
                    "The sound file to granulate; several with --out-dir, none where a preset "
                    "brings its own")
        ->option_text(" ");
    const auto option = [&command](const char* names, auto& value, const char* placeholder,
                                   const char* help) {
        return command.add_option(names, value, help)->option_text(placeholder)->expected(1);
    };
    option("-o,--output", typed.output, "OUT",
           "Where to write; its extension is the type. Default: INPUT's name with \"-grains.wav\" "
           "in the current folder");
    option("--seconds", typed.seconds, "S",
           "Length; the grains play throughout. Default: INPUT's own length, then the echo's tail");
    option("--rate", typed.rate, "HZ", "Output rate, 8000 to 384000. Default: INPUT's own");
    option("--block", typed.block, "N", "Frames per render call, 1 to 65536. Default: 512");
    option("--seed", typed.seed, "N",
           "1 to 4294967295: the same seed gives the same bytes. Default: from the clock");
    const auto settings = [&](const char* name, auto& value, const char* placeholder,
                              const char* help) {
        option(name, value, placeholder, help)
            ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
            ->allow_extra_args(false);
    };
    settings("--set", typed.settings, "NAME=VALUE",
             "A control's value, as listed below; may be given often");
    settings("--at", typed.timedSettings, "SECONDS:NAME=VALUE",
             "The same from the start of the block that holds this time of the output");
    option("--envelope", typed.envelope, "NAME",
           "The grains' envelope, see `zephyra envelopes`. Default: Hanning");
    option("--start", typed.start, "F", "Where the scanned part starts, a fraction of INPUT");
    option("--end", typed.end, "F",
           "Where it ends; before the start, the scan covers what lies between");
    command.add_flag(
        "--live", typed.live,
        "Feed INPUT to an effect instead of loading it, and hear the grains alone: they come from "
        "the last ten seconds heard. Without a scan setting they follow 0.2 s behind the input");
    option("--type", typed.type, "TYPE",
           "wav, aiff, aifc, caf, au, sd2 or m4a, whatever OUT's name");
    declareHostOptions(command, typed.host);
    declareMotionOptions(command, typed.motion);
    declarePresetOptions(command, typed.presets);
    command.add_flag("--float", typed.floats, "Write 32-bit floats (WAV), which nothing limits");
    option("--picture", typed.picture, "OUT.png",
           "Draw the source, every grain, the output and its spectrogram");
    command.add_flag("--quiet", typed.quiet, "Print nothing but errors");
    command.add_flag("--json", typed.json, "Print what was rendered as JSON");
}

Result<void> checkOneStart(const TypedRenderOptions& typed) {
    if (!typed.host.state || !typed.presets.bank) return {};
    return Failure{"--state and --bank both say what to start from; leave one out"};
}

Result<void> checkOneInput(const TypedRenderOptions& typed) {
    if (typed.inputs.size() > 1) return surplus(typed.inputs[1]);
    if (!typed.inputs.empty() || typed.presets.bank) return {};
    return Failure{std::string("render needs the name of a sound file") + kSeeHelp};
}

std::string outputExtension(const TypedRenderOptions& typed) {
    const OutputType* const type = typed.type ? findOutputType(*typed.type) : nullptr;
    return type ? type->name : defaultOutputType().name;
}

Result<RenderOptions> checkRenderOptions(const TypedRenderOptions& typed,
                                         const std::optional<PresetChoice>& preset) {
    RenderOptions options{};
    options.preset = preset;
    options.live = typed.live;
    options.floats = typed.floats;
    options.quiet = typed.quiet;
    options.json = typed.json;
    for (const auto step : {readFiles, readLengths, readSeed, readSettings, readEnvelope})
        if (Complaint wrong = step(typed, options)) return std::move(*wrong);
    if (Complaint wrong = readFraction("--start", typed.start, options.start))
        return std::move(*wrong);
    if (Complaint wrong = readFraction("--end", typed.end, options.end)) return std::move(*wrong);
    Result<PresetOptions> presets = checkPresetOptions(typed.presets);
    if (!presets) return Failure{presets.message()};
    options.savedPreset = std::move(presets.value().saved);
    if (const auto read = readHost(typed, options); !read) return Failure{read.message()};
    if (const auto clear = checkFileClashes(options); !clear) return Failure{clear.message()};
    for (const auto step : {checkSource, checkLive})
        if (auto wrong = step(options)) return std::move(*wrong);
    return options;
}

} // namespace zephyra
