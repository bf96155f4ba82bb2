// The options of what `zephyra render` writes.

#include "cli/options/render_options.h"
#include "platform/files/byte_stream.h"
#include "platform/sound/audio_file.h"
#include "platform/text/message_text.h"
#include "platform/text/names.h"
#include "platform/text/quantities.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace zephyra {

namespace fs = std::filesystem;

namespace {

using Read = OptionReader::Read;

constexpr const char* kRawHint = "; --raw writes samples without a header";

/// Whether people mean raw samples by that type or extension.
bool meansRaw(std::string_view name) {
    constexpr std::array<std::string_view, 4> kNames = {"raw", "f32", "f32le", "pcm"};
    return std::ranges::find(kNames, plainName(name)) != kNames.end();
}

Read outputInto(fs::path& output) {
    return [&output](const char* option, const std::string& text) -> Complaint {
        if (text.empty()) return wrongValue(option, text, "a file name");
        output = text;
        return {};
    };
}

Read typeInto(OutputType& type) {
    return [&type](const char* option, const std::string& text) -> Complaint {
        const OutputType* const found = findOutputType(text);
        if (!found) {
            Failure wrong = wrongValue(option, text, kOutputTypeNames);
            if (meansRaw(text)) wrong.message += kRawHint;
            return wrong;
        }
        type = *found;
        return {};
    };
}

Read pictureInto(std::optional<fs::path>& picture) {
    return [&picture](const char* option, const std::string& text) -> Complaint {
        picture = text;
        if (plainName(picture->extension().string()) == "png") return {};
        return wrongValue(option, text, "a file name that ends in .png");
    };
}

Read gainInto(std::optional<OutputGain>& gain) {
    return [&gain](const char* option, const std::string& text) -> Complaint {
        if (plainName(text) == "auto") {
            gain = OutputGain{.aim = OutputGain::Aim::clipFree};
            return {};
        }
        const std::optional<double> decibels = parseIn("dB", text);
        if (!decibels || *decibels < kLowestGain || *decibels > kHighestGain)
            return wrongValue(option, text, "auto, or decibels from -120 to 60 such as \"-6 dB\"");
        gain = OutputGain{.decibels = *decibels};
        return {};
    };
}

/// lowest to highest decibels; wanted tells what would be right.
Read aimInto(std::optional<OutputGain>& gain, OutputGain::Aim aim, const char* unit, double lowest,
             double highest, const char* wanted) {
    return [=, &gain](const char* option, const std::string& text) -> Complaint {
        const std::optional<double> decibels = parseIn(unit, text);
        if (!decibels || *decibels < lowest || *decibels > highest)
            return wrongValue(option, text, wanted);
        gain = OutputGain{.aim = aim, .decibels = *decibels};
        return {};
    };
}

/// A sound has one level: the first two of these that are given are told.
Complaint checkGains(const OptionReader& reader) {
    const char* first = nullptr;
    for (const char* const option : {"--loudness", "--normalize", "--gain"}) {
        if (!reader.isGiven(option)) continue;
        if (first)
            return Failure{std::string(first) + " and " + option +
                           " both set the finished sound's level; keep " + first +
                           (first == std::string_view("--loudness") ? " for how loud it is heard"
                                                                    : " for its highest peak") +
                           ", or leave it out"};
        first = option;
    }
    return {};
}

Complaint settleRaw(const OptionReader& reader, RenderRequest& request) {
    if (reader.isGiven("--type"))
        return Failure{"--raw and --type both say what is written; leave one out"};
    request.type = rawOutputType();
    request.format = SampleFormat::floats;
    return {};
}

} // namespace

void declareOutputOptions(OptionReader& reader, RenderRequest& request) {
    reader.add("-o,--output", "OUT",
               "Where to write; its extension is the type, and - stands for standard output. "
               "Default: INPUT's name with \"-grains.wav\" in the current folder",
               outputInto(request.output));
    reader.add("--picture", "OUT.png",
               "Draw the source, every grain, the output and its spectrogram",
               pictureInto(request.picture));
    reader.beginGroup("Output file");
    reader.add("--rate", "HZ", "Its rate, 8000 to 384000, as in 48000 or 48k. Default: INPUT's own",
               numberInto(request.sampleRate, "Hz", kLowestRate, kHighestRate,
                          "Hz from 8000 to 384000, as in 44100 or 48k"));
    reader.add("--type,--format", "TYPE",
               "wav, aiff, aifc, caf, au, sd2, m4a, flac or ogg, whatever OUT's name",
               typeInto(request.type));
    reader.addFlag("--float", "Write 32-bit floats (WAV), which nothing limits",
                   [&request] { request.format = SampleFormat::floats; });
    reader.addFlag(
        "--raw", "Write samples without a header: interleaved 32-bit little-endian floats", [] {});
    reader.addFlag("--cut", "Leave the last 10 ms as they are instead of fading them out",
                   [&request] { request.ending = RenderEnding::cut; });
    reader.addFlag("--ring-out",
                   "Let grains and echo that sound at the end go on by themselves, also after "
                   "--seconds",
                   [&request] { request.ringsOut = true; });
    reader.add("--gain", "DB",
               "Turn the finished sound up or down, e.g. \"-6 dB\"; auto turns it down as far as "
               "it takes not to clip",
               gainInto(request.gain));
    reader.add("--normalize", "DB",
               "Turn the finished sound up or down until its highest peak is there, e.g. \"-1 dB\"",
               aimInto(request.gain, OutputGain::Aim::peak, "dB", kLowestGain, 0.0,
                       "decibels from -120 to 0 such as \"-1 dB\""));
    reader.add("--loudness", "LUFS",
               "The same until it is as loud as this, integrated after EBU R 128, e.g. -16",
               aimInto(request.gain, OutputGain::Aim::loudness, "LUFS", kLowestLoudness, 0.0,
                       "LUFS from -70 to 0 such as -16"));
    reader.beginGroup("Options");
}

Complaint settleOutput(const OptionReader& reader, RenderRequest& request) {
    if (auto wrong = checkGains(reader)) return wrong;
    if (reader.isGiven("--raw")) return settleRaw(reader, request);
    const std::string extension = request.output.extension().string();
    if (!reader.isGiven("--type") && !extension.empty()) {
        const OutputType* const type = findOutputType(extension);
        if (!type)
            return Failure{"-o " + request.output.string() + ": no type " + inQuotes(extension) +
                           " can be written; use the extension " + kOutputTypeNames +
                           ", or --type" + (meansRaw(extension) ? kRawHint : "")};
        request.type = *type;
    }
    if (request.type.code == audio_file_type::sd2f && ByteStream::isNamedBy(request.output))
        return Failure{"Sound Designer II needs a second file beside the first; name a file with "
                       "-o, or another --type"};
    if (request.format == SampleFormat::shorts || request.type.code == audio_file_type::wave)
        return {};
    return Failure{"--float is for WAV only, not " + std::string(request.type.title) +
                   "; name OUT .wav or leave --float out"};
}

} // namespace zephyra
