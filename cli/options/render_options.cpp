#include "cli/options/render_options.h"

#include "cli/options/control_options.h"
#include "engine/envelope_menu.h"
#include "platform/text/message_text.h"
#include "platform/text/names.h"
#include "platform/text/quantities.h"
#include "platform/text/text_numbers.h"
#include "rendering/file_clashes.h"
#include "rendering/request_streams.h"

#include <CLI/App.hpp>
#include <algorithm>
#include <array>
#include <limits>
#include <string_view>

namespace zephyra {

namespace fs = std::filesystem;

namespace {

using Read = OptionReader::Read;

constexpr const char* kSeeHelp = "; see zephyra help render";
constexpr const char* kRightFraction = "a fraction of the source from 0 to 1, as in 0.25 or 25%";
constexpr auto kOtherEnvelopes = std::to_array<OtherWords>({
    {"gauss bell", "Gaussian"},
    {"hann raisedcosine cosine default", "Hanning"},
    {"blackman harris", "Blackman-Harris"},
    {"bartlett triangle triangular tri", "Barlett"},
    {"rect square boxcar box flat none", "Rectangular"},
    {"sinc", "Sync"},
    {"sine sin", "Sinusoidal"},
    {"pulse", "Pulse 1 or Pulse 2"},
    {"noise rnd", "Random"},
});

// --- values ---

Read blockInto(int& frames) {
    return [&frames](const char* option, const std::string& text) -> Complaint {
        const auto number = parseWhole(text);
        if (!number || *number < 1 || *number > kMostBlockFrames)
            return wrongValue(option, text, "frames, a whole number from 1 to 65536");
        frames = static_cast<int>(*number);
        return {};
    };
}

Read seedInto(std::optional<std::uint32_t>& seed) {
    return [&seed](const char* option, const std::string& text) -> Complaint {
        const auto number = parseWhole(text);
        if (!number || *number < 1 || *number > std::numeric_limits<std::uint32_t>::max())
            return wrongValue(option, text, "a whole number from 1 to 4294967295");
        seed = static_cast<std::uint32_t>(*number);
        return {};
    };
}

Read settingInto(std::vector<ControlSetting>& settings) {
    return [&settings](const char* option, const std::string& text) -> Complaint {
        const Result<ControlSetting> setting = parseSetting(text);
        if (!setting) return Failure{std::string(option) + " " + text + ": " + setting.message()};
        settings.push_back(setting.value());
        return {};
    };
}

Read timedSettingInto(RenderRequest& request) {
    return [&request](const char* option, const std::string& text) -> Complaint {
        const std::string typed = std::string(option) + " " + text;
        const Result<TimedSetting> setting =
            parseTimedSetting(text, request.host.tempo.value_or(kDefaultTempo));
        if (!setting) return Failure{typed + ": " + setting.message()};
        if (request.seconds && setting.value().seconds >= *request.seconds)
            return Failure{typed + " comes after the end; --seconds is " +
                           formatNumber(*request.seconds)};
        insertByTime(request.timedSettings, setting.value());
        return {};
    };
}

Read envelopeInto(std::optional<std::size_t>& envelope) {
    return [&envelope](const char* option, const std::string& text) -> Complaint {
        envelope = findEnvelope(text);
        if (envelope) return {};
        constexpr std::string_view kPrefix = "Grain Envelope: ";
        std::vector<std::string_view> names;
        for (const std::string_view entry : kEnvelopeMenu)
            names.push_back(entry.substr(kPrefix.size()));
        return Failure{std::string(option) + ": there is no " + inQuotes(text) + "; " +
                       rightName(text, names, kOtherEnvelopes) +
                       " (`zephyra envelopes` lists all)"};
    };
}

Read qualityInto(std::optional<GrainQuality>& quality) {
    return [&quality](const char* option, const std::string& text) -> Complaint {
        constexpr std::array<std::string_view, 3> kNames = {"classic", "fine", "best"};
        const auto found = std::ranges::find(kNames, text);
        if (found == kNames.end())
            return Failure{std::string(option) + ": there is no " + inQuotes(text) +
                           "; write classic, fine or best"};
        quality = static_cast<GrainQuality>(found - kNames.begin());
        return {};
    };
}

// --- what goes together ---

Complaint checkOneStart(const RenderOptions& options) {
    if (!options.request.host.state || !options.played) return {};
    return Failure{"--state and --preset both say what to start from; leave one out"};
}

/// A word that stands where only one sound file is expected.
Failure surplus(const fs::path& input) {
    const std::string word = input.string();
    const std::string quoted = inQuotes(word);
    const std::size_t sign = word.find('=');
    if (sign != std::string::npos)
        return {quoted + " stands alone; write " +
                (word.find(':') < sign ? "--lfo, --learn or --at before it"
                                       : "--set before each NAME=VALUE") +
                kSeeHelp};
    if (parseTime(word))
        return {quoted +
                " stands alone; write the option that it is for before it, as in "
                "--seconds " +
                word + kSeeHelp};
    return {quoted + " is one file too many; to write it, write -o " + word +
            ", and to render several, --out-dir DIR" + kSeeHelp};
}

/// One sound file, or none and a preset instead; with --out-dir any number of either.
Complaint checkInputs(const RenderOptions& options) {
    const std::vector<fs::path>& inputs = options.inputs;
    if (!options.outDir && inputs.size() > 1) return surplus(inputs[1]);
    if (std::ranges::count(inputs, fs::path()) > 0)
        return Failure{"INPUT is empty; name a sound file"};
    if (!inputs.empty() || options.played) return {};
    if (!options.outDir)
        return Failure{
            std::string("render needs the name of a sound file, as in zephyra render bird.wav, or "
                        "--preset") +
            kSeeHelp};
    return Failure{"--out-dir needs something to render; name sound files, or --bank and --preset"};
}

Complaint checkInputStreams(const RenderOptions& options) {
    const auto right = checkStreams(options.inputs, options.request);
    return right ? Complaint() : Failure{right.message()};
}

/// Options that name one file cannot be meant for many renders.
Complaint checkBatch(const OptionReader& reader, const RenderOptions& options) {
    if (!options.outDir) return {};
    for (const char* option : {"-o", "--picture", "--save-state", "--record-scrub"})
        if (reader.isGiven(option))
            return Failure{std::string(option) +
                           " names one file; leave it out with --out-dir, where every render has "
                           "files of its own"};
    return {};
}

Complaint checkParts(const RenderRequest& request) {
    if (request.live && request.isInstrument())
        return Failure{"--live feeds INPUT to an effect; leave it out with --as instrument"};
    if (request.live && request.host.sample)
        return Failure{"--live cuts the grains from INPUT, --sample from a file; leave one out"};
    if (request.host.midiTempo && !request.host.midi)
        return Failure{"--midi-tempo has no tempo to follow; add --midi FILE.mid"};
    if (request.host.programs && !request.host.midi)
        return Failure{"--programs has no program changes to follow; add --midi FILE.mid"};
    return {};
}

// --- what goes with an input and a preset ---

Complaint checkEffectOptions(const RenderRequest& request) {
    if (!request.isInstrument()) return {};
    if (request.host.sample)
        return Failure{
            "--sample is for an effect; an instrument's sample is INPUT (add --as effect "
            "to feed INPUT to an effect)"};
    if (!request.host.dryWet) return {};
    return Failure{
        "--drywet is for an effect; an instrument has no input to mix with (add --as effect)"};
}

/// An effect's input is INPUT; an instrument may have its sample from the preset.
Complaint checkSource(const RenderRequest& request) {
    if (!request.input.empty()) return {};
    const std::string preset = "preset " + inQuotes(request.preset->name);
    if (request.preset->live && !request.isInstrument())
        return Failure{preset + " listens to live input; name INPUT, a sound file to feed it"};
    if (!request.isInstrument())
        return Failure{"an effect needs input; name INPUT, a sound file to feed it"};
    if (!request.preset->hasSound)
        return Failure{preset + " brings no sample; name INPUT, the sound file that it is to play"};
    return {};
}

/// An instrument has no input that LIVE could listen to.
Complaint checkLive(const RenderRequest& request) {
    const auto asksForLive = [](const ControlSetting& setting) {
        return setting.control == ControlId::live && setting.value != 0;
    };
    bool asked = std::ranges::any_of(request.settings, asksForLive);
    for (const TimedSetting& timed : request.timedSettings)
        asked = asked || asksForLive(timed.setting);
    for (const LearnRequest& learned : request.motion.learned)
        asked = asked || learned.control == ControlId::live;
    if (!asked || !request.isInstrument()) return {};
    return Failure{"LIVE is for an effect, which has an input; add --as effect"};
}

} // namespace

void declareRenderOptions(CLI::App& command, OptionReader& reader, RenderOptions& options) {
    RenderRequest& request = options.request;
    command
        .add_option("INPUT", options.inputs,
                    "The sound file to granulate, - for standard input; several with --out-dir, "
                    "none where a preset brings its own")
        ->option_text(" ");
    declareTempo(reader, request.host); // which every time may be counted by
    reader.beginGroup("Options");
    declareOutputOptions(reader, request);
    reader.add(
        "--seconds", "TIME",
        "Length; the grains play throughout. Default: INPUT's own length, then the echo's tail",
        secondsInto(request.seconds, request.host, std::numeric_limits<double>::denorm_min(),
                    kMostSeconds,
                    "seconds above 0, up to 86400 (a day), or a time as in 1:30 or 8b"));
    reader.addRepeated("--set", "NAME=VALUE",
                       "A control's value, as listed below; may be given often",
                       settingInto(request.settings));
    reader.addRepeated("--at", "TIME:NAME=VALUE",
                       "The same from this time of the output on, as in 2.5:Pitch=7",
                       timedSettingInto(request));
    reader.add("--envelope", "NAME",
               "The grains' envelope, see `zephyra envelopes`. Default: Hanning",
               envelopeInto(request.envelope));
    reader.add("--quality", "NAME",
               "How grains read between frames: classic, fine or best. Default: classic",
               qualityInto(request.quality));
    reader.add(
        "--seed", "N",
        "1 to 4294967295: the same seed gives the same bytes. Default: the state's, else from the "
        "clock",
        seedInto(request.seed));
    reader.beginGroup("Sound");
    reader.add("--start", "F", "Where the scanned part starts, a fraction of INPUT (0.25 or 25%)",
               numberInto(request.start, "x", 0, 1, kRightFraction));
    reader.add("--end", "F", "Where it ends; before the start, the scan covers what lies between",
               numberInto(request.end, "x", 0, 1, kRightFraction));
    reader.addFlag(
        "--steady-level",
        "Keep the sound as loud whatever the grains' density, length, envelope and width",
        request.steadyLevel);
    declareFades(reader, request.host);
    declareLiveOptions(reader, request);
    declareHostOptions(reader, request.host);
    reader.add("--block", "N", "Frames computed at a time, 1 to 65536. Default: 512",
               blockInto(request.blockFrames));
    declareMotionOptions(reader, request);
    declarePresetOptions(reader, options);
    reader.beginGroup("Printing");
    reader.addFlag("--quiet", "Print nothing but errors", options.quiet);
    reader.addFlag("--json", "Print what was rendered as JSON", options.json);

    reader.addCheck([&options] { return checkOneStart(options); });
    reader.addCheck([&reader, &options] { return checkBatch(reader, options); });
    reader.addCheck([&options] { return checkInputs(options); });
    reader.addCheck([&options] { return checkInputStreams(options); });
    reader.addCheck([&reader, &request] { return settleOutput(reader, request); });
    reader.addCheck([&request] { return checkParts(request); });
}

Complaint checkRequest(const RenderRequest& request, const Folders& folders) {
    if (auto wrong = checkEffectOptions(request)) return wrong;
    if (const auto clear = checkFileClashes(request, folders); !clear)
        return Failure{clear.message()};
    if (auto wrong = checkSource(request)) return wrong;
    return checkLive(request);
}

} // namespace zephyra
