#include "screens/model/path/path_model.h"

#include "controls/toggle.h"

#include <algorithm>
#include <cmath>

namespace zephyra {

namespace {

constexpr double kDroppedShows = 0.3; // seconds

} // namespace

std::string VoicesFace::name() const {
    return std::to_string(semitones.size()) + (semitones.size() == 1 ? " grain" : " grains");
}

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
    readVoices(view, time);
    readKeep(view);
}

void PathModel::readVoices(AudioUnitViewController& view, const FrameTime& time) {
    if (sounding_) {
        const auto known = sounding_->semitones();
        voices_.semitones.assign(
            known.begin(), known.begin() + std::min<std::ptrdiff_t>(std::ssize(known), kVoices));
        voices_.dropped = sounding_->droppedRecently();
        return;
    }
    const mokGranulatorSF& engine = view._GRANULATOR_STREAM.engine();
    const std::uint64_t rendered = engine.renderedFrames(), sounded = engine.soundedSamples();
    if (rendered != rendered_) { // else no block was rendered since
        const double mean =
            static_cast<double>(sounded - sounded_) / static_cast<double>(rendered - rendered_);
        const auto count =
            static_cast<std::size_t>(std::clamp(std::lround(mean), 0L, long{kVoices}));
        voices_.semitones.assign(count, view._GRANULATOR_STREAM.controls._pitch.value());
    }
    rendered_ = rendered, sounded_ = sounded;
    if (engine.droppedGrains() != dropped_) droppedUntil_ = time.now + kDroppedShows;
    dropped_ = engine.droppedGrains();
    voices_.dropped = time.now < droppedUntil_;
}

void PathModel::readKeep(AudioUnitViewController& view) {
    const WaveForm& sound = view._GRANULATOR_STREAM.waveForm();
    keep_.isSaving = view.liveExport.isSaving();
    keep_.seconds = 0;
    if (!sound.isLiveCurrent()) return;
    const double seconds = static_cast<double>(WaveForm::kLiveFrames) / sound.mSample()->sampleRate;
    keep_.seconds = std::max(1, static_cast<int>(seconds));
}

} // namespace zephyra
