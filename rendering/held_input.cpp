#include "rendering/held_input.h"

#include "platform/text/text_numbers.h"

#include <algorithm>
#include <cmath>

namespace zephyra {

namespace {

constexpr float kAudible = 0x1p-15f; // the last bit of 16: nothing below it is written

/// Positions of the first and the last audible frame.
std::optional<std::pair<float, float>> soundingPart(const WaveForm& waveForm) {
    const std::vector<float> frames = waveForm.heardFrames(); // the newest one is the sound's last
    const auto isAudible = [](float frame) { return std::abs(frame) >= kAudible; };
    const auto first = std::ranges::find_if(frames, isAudible);
    if (first == frames.end()) return std::nullopt;
    const auto last = std::find_if(frames.rbegin(), frames.rend(), isAudible);
    const auto size = static_cast<float>(waveForm.liveSample()->size);
    const auto position = [&](auto toEnd) { return 1.0f - static_cast<float>(toEnd) / size; };
    return std::pair(position(frames.end() - first), position(last - frames.rbegin()));
}

} // namespace

void HeldInput::beginCycle(const MOK_SCRUB_GRANULATOR& stream, std::uint64_t end) {
    const WaveForm& waveForm = stream.waveForm();
    if (!waveForm.isHeld())
        held_.reset();
    else if (!held_ || held_->hold != waveForm.holds()) {
        held_ = Held{waveForm.holds(), written_, soundingPart(waveForm)};
        if (!firstHeld_) firstHeld_ = written_;
    }
    const bool frozen = stream.linear(ControlId::freeze) != 0;
    if (frozen && waveForm.isLiveCurrent() && !held_ && !firstUnheld_) firstUnheld_ = written_;
    if (stream.isLive()) written_ = end;
}

void HeldInput::add(const GrainRecord& grain) {
    if (!held_) return;
    isCut_ = true;
    if (!held_->sounding) return;
    const float end = grain.position + std::max(grain.length, 0.0f) * grain.rate;
    const auto [first, last] = *held_->sounding;
    sounds_ = sounds_ || (grain.position <= last && end >= first);
}

std::string HeldInput::notice(double sampleRate) const {
    const auto at = [&](std::uint64_t frames) {
        return "Freeze at " + formatFixed(static_cast<double>(frames) / sampleRate, 3) + " s ";
    };
    if (isCut_ && !sounds_)
        return at(*firstHeld_) +
               "holds silence where the scan stands; freeze later, or move Scrubbing Wave to where "
               "there is sound";
    if (firstUnheld_ && !firstHeld_)
        return at(*firstUnheld_) +
               "has nothing to hold, for nothing has been heard by then: grains go on following "
               "the input; freeze later";
    return {};
}

} // namespace zephyra
