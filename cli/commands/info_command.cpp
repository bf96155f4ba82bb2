#include "cli/commands/commands.h"

#include "cli/terminal/interrupt.h"
#include "cli/terminal/json_text.h"
#include "platform/sound/loudness.h"
#include "platform/sound/sound_file.h"
#include "platform/text/text_numbers.h"

#include <nlohmann/json.hpp>
#include <optional>

namespace zephyra {

namespace {

double secondsOf(const SoundFileInfo& info) {
    return static_cast<double>(info.frames) / info.sampleRate;
}

std::string jsonInfo(const std::string& file, const SoundFileInfo& info, const Loudness& loudness) {
    using Json = nlohmann::ordered_json;
    const auto orNull = [](const std::optional<double>& value) {
        return value ? Json(*value) : Json(nullptr);
    };
    Json json;
    json["file"] = file;
    json["format"] = info.format;
    json["channels"] = info.channels;
    json["sampleRate"] = info.sampleRate;
    json["frames"] = info.frames;
    json["seconds"] = secondsOf(info);
    json["peakDecibels"] = orNull(loudness.peakDecibels);
    json["loudnessLufs"] = orNull(loudness.integratedLufs);
    return textOfJson(json);
}

std::string textInfo(const SoundFileInfo& info, const Loudness& loudness) {
    const auto measured = [](const std::optional<double>& value, const char* unit,
                             const char* otherwise) {
        return value ? formatFixed(*value, 1) + " " + unit : std::string(otherwise);
    };
    return "format    " + info.format + "\nchannels  " + std::to_string(info.channels) +
           "\nrate      " + formatNumber(info.sampleRate) + " Hz\nlength    " +
           formatDuration(secondsOf(info)) + " (" + std::to_string(info.frames) +
           " frames)\npeak      " + measured(loudness.peakDecibels, "dB", "silent") +
           "\nloudness  " +
           measured(loudness.integratedLufs, "LUFS", "too quiet or too short to measure") + "\n";
}

} // namespace

ExitCode runInfo(const CommandContext&, const InfoRequest& request) {
    if (request.file.empty())
        return endWith(ExitCode::wrongUsage, "FILE is empty; name a sound file");
    SoundFileOptions reading;
    reading.progress = [](double) { return !interrupted(); };
    std::optional<LoudnessMeter> meter; // of the file's own channels, not of their mean
    reading.onBlock = [&meter](const SoundFileInfo& info, const float* block, std::uint32_t count) {
        if (!meter) meter.emplace(info.channels, info.sampleRate);
        meter->add(block, count);
    };
    const Result<SoundFile> sound = readSoundFile(request.file, reading);
    if (!sound) return endWith(ExitCode::failure, sound.message());
    const SoundFileInfo& info = sound.value().info;
    const Loudness loudness = meter->measure(); // a file that was read had a block
    return printOut(request.json ? jsonInfo(request.file, info, loudness)
                                 : textInfo(info, loudness));
}

} // namespace zephyra
