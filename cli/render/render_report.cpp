#include "cli/render/render_report.h"

#include "cli/terminal/json_text.h"
#include "engine/envelope_menu.h"
#include "platform/audio_unit/audio_unit_status.h"
#include "platform/cpu_level.h"
#include "platform/text/decibels.h"
#include "platform/text/message_text.h"
#include "platform/text/text_numbers.h"

#include <cmath>
#include <nlohmann/json.hpp>

namespace zephyra {

namespace {

double secondsOf(const RenderPlan& plan) {
    return static_cast<double>(plan.frames) / plan.sampleRate;
}

double speedOf(const RenderOutcome& outcome) {
    return secondsOf(outcome.plan) / std::max(outcome.statistics.renderSeconds, 1e-9);
}

/// ", turned down by 3.4 dB", or nothing.
std::string gainText(double gain) {
    if (gain == 1) return "";
    return std::string(", turned ") + (gain < 1 ? "down" : "up") + " by " +
           formatFixed(std::abs(decibelsOf(gain)), 1) + " dB";
}

const char* componentName(FourCharCode type) {
    if (type == component_type::instrument) return "instrument";
    return type == component_type::effect ? "effect" : "music-effect";
}

/// Adds what moved the controls, where something did.
void addMotion(nlohmann::ordered_json& json, const RenderOutcome& outcome) {
    const RenderPlan& plan = outcome.plan;
    if (!plan.automation.empty()) json["automationPoints"] = plan.automation.size();
    if (!plan.midi.empty()) json["midiMessages"] = plan.midi.size();
    if (plan.counts.lfos > 0) json["lfos"] = plan.counts.lfos;
    if (plan.counts.controllers > 0) json["learnedControllers"] = plan.counts.controllers;
    if (plan.counts.takePoints > 0) json["takePoints"] = plan.counts.takePoints;
    if (!plan.motion.recordScrub) return;
    json["recordedTake"] = plan.motion.recordScrub->string();
    json["recordedTakePoints"] = outcome.recordedPositions;
}

/// ", 2 LFOs, a take of 30 positions", or nothing.
std::string motionText(const RenderOutcome& outcome) {
    const RenderPlan& plan = outcome.plan;
    const auto [lfos, controllers, takePoints] = plan.counts;
    std::string text;
    if (lfos > 0) text += ", " + counted(lfos, "LFO");
    if (controllers > 0) text += ", " + counted(controllers, "learned controller");
    if (takePoints > 0) text += ", a take of " + std::to_string(takePoints) + " positions";
    if (plan.motion.recordScrub)
        text += ", " + std::to_string(outcome.recordedPositions) + " positions kept in " +
                plan.motion.recordScrub->string();
    return text;
}

void addPresets(nlohmann::ordered_json& json, const RenderOutcome& outcome) {
    if (const auto& preset = outcome.request.preset) {
        json["bank"] = preset->bank;
        json["preset"] = preset->name;
        json["presetKey"] = preset->key;
    }
    if (!outcome.sample.empty()) json["sample"] = outcome.sample;
    if (const auto& saved = outcome.request.savedPreset) {
        json["savedBank"] = saved->bank;
        json["savedPreset"] = saved->name;
    }
}

/// What was measured of the files that were named.
void addSource(nlohmann::ordered_json& json, const ReadSource& read) {
    json["sourceChannels"] = read.shown.channels;
    const ChannelLevels& sample = read.sampleLevels;
    const auto& channels =
        sample.channels().empty() ? read.inputLevels.channels() : sample.channels();
    json["sourceDc"] = nlohmann::ordered_json::array();
    for (const SignalLevel& channel : channels) json["sourceDc"].push_back(channel.mean());
}

/// ", as an effect because the preset has LIVE on, saved as ...", or nothing.
std::string presetText(const RenderRequest& request) {
    std::string text;
    if (request.isEffectOfPreset()) text += ", as an effect because the preset has LIVE on";
    if (const auto& saved = request.savedPreset)
        text += ", saved as " + inQuotes(saved->name) + " in " + saved->bank;
    return text;
}

} // namespace

std::string jsonReport(const RenderOutcome& outcome, const ReadSource& read,
                       const std::vector<std::string>& notices) {
    const RenderRequest& request = outcome.request;
    const RenderPlan& plan = outcome.plan;
    const OutputFile& file = outcome.file;
    nlohmann::ordered_json json;
    if (!request.input.empty()) json["input"] = request.input.string();
    addPresets(json, outcome);
    json["output"] = request.output.string();
    if (request.picture) json["picture"] = request.picture->string();
    json["type"] = request.type.name;
    json["float"] = request.format == SampleFormat::floats;
    json["as"] = componentName(request.componentType());
    json["live"] = plan.use == SourceUse::live;
    json["envelope"] = kEnvelopeMenu[static_cast<std::size_t>(
        plan.initial[static_cast<std::size_t>(ControlId::envelope)])];
    if (plan.reportsContext()) json["tempo"] = request.host.tempo.value_or(kDefaultTempo);
    addMotion(json, outcome);
    if (request.host.saveState) json["savedState"] = request.host.saveState->string();
    addSource(json, read);
    json["sampleRate"] = plan.sampleRate;
    json["frames"] = plan.frames;
    json["seconds"] = secondsOf(plan);
    json["block"] = plan.blockFrames;
    json["seed"] = plan.seed;
    json["peak"] = file.peak();
    json["rms"] = file.rms();
    json["dc"] = file.offset();
    json["limitedSamples"] = file.limitedSamples();
    if (file.limitedSamples() > 0) json["clippedDecibels"] = decibelsOf(file.peak());
    if (request.gain) json["gainDecibels"] = decibelsOf(outcome.gain);
    if (request.ending == RenderEnding::cut) json["cut"] = true;
    json["grainsStarted"] = outcome.statistics.startedGrains;
    json["grainsDropped"] = outcome.statistics.droppedGrains;
    json["speed"] = speedOf(outcome);
    json["cpuLevel"] = cpuLevelName(chosenCpuLevel());
    json["notices"] = notices;
    return textOfJson(json);
}

std::string levelText(const OutputFile& file) {
    return "rms " + decibelText(file.rms()) + ", peak " + decibelText(file.peak());
}

std::string outputLine(const RenderOutcome& outcome) {
    const RenderRequest& request = outcome.request;
    const OutputFile& file = outcome.file;
    return outputTitle(request.output) + ": " + formatDuration(secondsOf(outcome.plan)) + ", " +
           request.type.title + (request.format == SampleFormat::floats ? " 32-bit float" : "") +
           ", stereo, " + formatNumber(outcome.plan.sampleRate) + " Hz, peak " +
           decibelText(file.peak()) + ", rms " + decibelText(file.rms()) + gainText(outcome.gain) +
           "\n";
}

std::string textReport(const RenderOutcome& outcome) {
    const RenderStatistics& statistics = outcome.statistics;
    std::string text = outputLine(outcome);
    text += std::to_string(statistics.startedGrains) +
            (statistics.startedGrains == 1 ? " grain" : " grains");
    if (statistics.droppedGrains > 0)
        text += " (" + std::to_string(statistics.droppedGrains) + " dropped)";
    text += motionText(outcome) + presetText(outcome.request) + ", seed " +
            std::to_string(outcome.plan.seed) + ", rendered at " +
            formatFixed(speedOf(outcome), 0) + " times real time\n";
    return text;
}

} // namespace zephyra
