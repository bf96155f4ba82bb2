#include "cli/commands/commands.h"

#include "cli/terminal/interrupt.h"
#include "cli/terminal/json_text.h"
#include "library/named_sample.h"
#include "platform/sound/channel_levels.h"
#include "platform/sound/loudness.h"
#include "platform/sound/sound_file.h"
#include "platform/text/text_numbers.h"
#include "rendering/request_streams.h"

#include <nlohmann/json.hpp>
#include <optional>

namespace zephyra {

namespace {

double secondsOf(const SoundFileInfo& info) {
    return static_cast<double>(info.frames) / info.sampleRate;
}

/// What the reading of the file measured, over its own channels and not their mean.
struct Measured {
    std::optional<LoudnessMeter> loudness;
    ChannelLevels levels;
};

std::string jsonInfo(const std::string& file, const SoundFileInfo& info, const Measured& measured) {
    using Json = nlohmann::ordered_json;
    const auto orNull = [](const std::optional<double>& value) {
        return value ? Json(*value) : Json(nullptr);
    };
    const Loudness loudness = measured.loudness->measure();
    Json json;
    json["file"] = file;
    json["format"] = info.format;
    json["channels"] = info.channels;
    json["sampleRate"] = info.sampleRate;
    json["frames"] = info.frames;
    json["seconds"] = secondsOf(info);
    json["peakDecibels"] = orNull(loudness.peakDecibels);
    json["loudnessLufs"] = orNull(loudness.integratedLufs);
    json["dc"] = Json::array();
    for (const SignalLevel& channel : measured.levels.channels())
        json["dc"].push_back(channel.mean());
    return textOfJson(json);
}

/// "0.00 %, 12.50 %": of full scale, channel by channel.
std::string offsetsText(const ChannelLevels& levels) {
    std::string text;
    for (const SignalLevel& channel : levels.channels())
        text += (text.empty() ? "" : ", ") + offsetText(channel.mean());
    return text;
}

std::string textInfo(const SoundFileInfo& info, const Measured& measured) {
    const auto orElse = [](const std::optional<double>& value, const char* unit,
                           const char* otherwise) {
        return value ? formatFixed(*value, 1) + " " + unit : std::string(otherwise);
    };
    const Loudness loudness = measured.loudness->measure();
    return "format    " + info.format + "\nchannels  " + std::to_string(info.channels) +
           "\nrate      " + formatNumber(info.sampleRate) + " Hz\nlength    " +
           formatDuration(secondsOf(info)) + " (" + std::to_string(info.frames) +
           " frames)\npeak      " + orElse(loudness.peakDecibels, "dB", "silent") + "\nloudness  " +
           orElse(loudness.integratedLufs, "LUFS", "too quiet or too short to measure") +
           "\ndc        " + offsetsText(measured.levels) + "\n";
}

Result<SoundFile> readMeasured(const std::filesystem::path& file, const StreamedFiles& streams,
                               Measured& measured) {
    auto opened = openSoundFile(file, streams);
    if (!opened) return Failure{opened.message()};
    SoundFileOptions reading;
    reading.progress = [](double) { return goesOn(); };
    reading.onBlock = [&](const SoundFileInfo& info, const float* block, std::uint32_t count) {
        if (!measured.loudness) measured.loudness.emplace(info.channels, info.sampleRate);
        measured.loudness->add(block, count);
        measured.levels.add(block, count, info.channels);
    };
    return readSoundFile(opened.value(), reading);
}

} // namespace

ExitCode runInfo(const CommandContext& context, const InfoRequest& request) {
    if (request.file.empty())
        return endWith(ExitCode::wrongUsage, "FILE is empty; name a sound file");
    const std::filesystem::path file = namedSample(request.file, context.folders);
    if (const auto right = checkStreams({&file, 1}, {}); !right)
        return endWith(ExitCode::wrongUsage, right.message());
    StreamedFiles streams;
    if (const auto taken = takeSoundStream(file, streams, goesOn); !taken)
        return endWith(failureOrInterrupt(), taken.message());
    Measured measured;
    const Result<SoundFile> sound = readMeasured(file, streams, measured);
    if (!sound) return endWith(ExitCode::failure, sound.message());
    const SoundFileInfo& info = sound.value().info; // a file that was read had a block
    return printOut(request.json ? jsonInfo(request.file, info, measured)
                                 : textInfo(info, measured));
}

} // namespace zephyra
