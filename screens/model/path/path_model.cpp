#include "screens/model/path/path_model.h"

#include "controls/toggle.h"

#include <algorithm>

namespace zephyra {

std::string KeepFace::name() const {
    if (isSaving) return "Keeping";
    if (seconds == 0) return "Keep live";
    std::string text("Keep ");
    return text.append(std::to_string(seconds)).append(" s");
}

void PathModel::read(AudioUnitViewController& view, const FrameTime& time) {
    for (const PathCell& cell : pathCells()) {
        if (cell.kind != PathCellKind::knob) continue;
        const auto at = static_cast<std::size_t>(cell.id);
        faces_[at] = memories_[at].read(view, cell.id, time.now);
    }
    for (const ControlId id : {ControlId::echoSwitch, ControlId::ringModulationSwitch,
                               ControlId::scanSync, ControlId::echoSync})
        isOn_[static_cast<std::size_t>(id)] = view._GRANULATOR_STREAM.linear(id) != 0.0f;
    envelope_ = view._GRANULATOR_STREAM.envelope();
    readVoices(time);
    readKeep(view);
}

void PathModel::readVoices(const FrameTime& time) {
    voicesTick_.advance(time.elapsed);
    if (!sounding_ || !voicesTick_.isNow()) return;
    std::array<SoundingVoice, kVoices> voices;
    const std::size_t count = sounding_->sounding(voices);
    voices_.show(std::span(voices).first(count), sounding_->dropped(), time.now);
}

void PathModel::readKeep(AudioUnitViewController& view) {
    const WaveForm& sound = view._GRANULATOR_STREAM.waveForm();
    keep_.isSaving = view.liveExport.isSaving();
    keep_.seconds = 0;
    const LiveSample* const live = sound.isLiveCurrent() ? sound.liveSample() : nullptr;
    if (!live || live->heard == 0) return;
    const double seconds = static_cast<double>(live->heard) / double{live->sampleRate};
    keep_.seconds = std::max(1, static_cast<int>(seconds));
}

} // namespace zephyra
