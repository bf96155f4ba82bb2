// Which sound a stream plays: a file's, as it is or normalized, or what live input left.

#include "platform/text/text_numbers.h"
#include "stream/normalized_sample.h"
#include "stream/stream_controller.h"

#include <filesystem>
#include <utility>

namespace zephyra {

void MOK_SCRUB_GRANULATOR::handToEngine(const mokSample* sample) {
    setQuality(quality_);      // which depends on LIVE
    engine_.setSample(sample); // drops the pitch; the other two depend on the sample's length
    ui_setPitch(&controls._pitch);
    ui_setSpeed(&controls._scanning);
    ui_setJittering(&controls._jitter);
}

bool MOK_SCRUB_GRANULATOR::loadSound(std::shared_ptr<const mokSample> sound,
                                     SampleReference reference, SoundUse use) {
    auto playable = playableSound(std::move(sound), normalizePeak());
    if (!playable) return false;
    takeSound(std::move(*playable), std::move(reference), use);
    return true;
}

void MOK_SCRUB_GRANULATOR::takeSound(PlayableSound sound, SampleReference reference, SoundUse use) {
    if (reference.frames == 0) reference.frames = sound.sound->size;
    const std::optional<float> peak = sound.wanted;
    waveForm_.setFileSample(std::move(sound));
    nameSound(std::move(reference));
    if (waveForm_.isLiveCurrent() && use == SoundUse::play) playFile();
    normalizer_.tookSound(peak); // the knob may have moved while it was made
}

void MOK_SCRUB_GRANULATOR::nameSound(SampleReference reference) {
    // Its copy for states has about three bytes a frame.
    if (reference_.embedded != reference.embedded)
        retirement_.retire(std::move(reference_.embedded),
                           std::size_t{3} * static_cast<std::size_t>(reference_.frames));
    reference_ = std::move(reference);
    waveForm_.setLastSelectedPath(reference_.path);
    if (!waveForm_.isLiveCurrent()) waveForm_.setCurrentPath(reference_.path);
}

void MOK_SCRUB_GRANULATOR::playFile() {
    leaveLive();
    waveForm_.makeFileCurrent();
    if (settings_) settings_->AUv3_Parameter_LiveToggle_from_DSP();
}

void MOK_SCRUB_GRANULATOR::restoreLastSample() {
    if (!waveForm_.hasFileSample()) return;
    playFile();
    applyNormalize(); // LIVE moved the control
}

void MOK_SCRUB_GRANULATOR::ui_normalizeBuffer(Control*) {
    if (waveForm_.isLiveCurrent()) {
        applyNormalize();
        return;
    }
    normalizeTouched_ = true;
    normalizer_.turned();
}

void MOK_SCRUB_GRANULATOR::setNormalizeTouched(bool touched) {
    normalizeTouched_ = touched;
    applyNormalize();
}

std::optional<float> MOK_SCRUB_GRANULATOR::normalizePeak() const {
    if (!normalizeTouched_) return std::nullopt;
    return controls._normalizeGain.value();
}

void MOK_SCRUB_GRANULATOR::applyNormalize() {
    if (waveForm_.isLiveCurrent())
        waveForm_.data().normalizeGain = controls._normalizeGain.value();
    else
        normalizer_.apply();
}

std::string MOK_SCRUB_GRANULATOR::fileInformation() const {
    if (waveForm_.isLiveCurrent()) return waveForm_.title();
    const std::string name = std::filesystem::path(reference_.path).filename().string();
    if (!name.empty() && reference_.frames == 0) return name + ", not loaded";
    if (!waveForm_.hasFileSample()) return "No sound";
    std::string line = name.empty() ? std::string("Sound") : name;
    line += ", " + formatFixed(waveForm_.getFileDuration(), 3) + " s, ";
    line += formatFixed(double{waveForm_.mSample()->sampleRate}, 0) + " Hz";
    if (reference_.channels > 0)
        line += reference_.channels == 1 ? ", mono"
                                         : ", " + std::to_string(reference_.channels) + " channels";
    if (!reference_.format.empty()) line += ", " + reference_.format;
    return line;
}

} // namespace zephyra
