#include "screens/model/scope_trace.h"

#include <algorithm>
#include <cmath>

namespace zephyra {

namespace {

constexpr float kDeepEnough = 0.9f; // of the deepest trough: in noise, the newest such one

} // namespace

void ScopeTrace::setColumns(std::size_t count) {
    columns_.assign(count, {});
}

void ScopeTrace::begin(const Oscilloscope& oscilloscope) {
    setColumns(columns_.size());
    arrival_.begin(oscilloscope.added());
}

bool ScopeTrace::advance(const Oscilloscope& oscilloscope, const FrameTime& time) {
    switch (arrival_.look(oscilloscope.added(), time)) {
    case SoundArrival::State::waiting:
        return false;
    case SoundArrival::State::silence:
        return show({});
    case SoundArrival::State::fresh:
        break;
    }
    static_assert(kShown + kSought <= Oscilloscope::kFrames / 2, "RENDER writes meanwhile");
    frames_.resize(kShown + kSought);
    right_.resize(frames_.size());
    oscilloscope.newest(0, frames_, arrival_.begins());
    oscilloscope.newest(1, right_, arrival_.begins());
    std::transform(frames_.begin(), frames_.end(), right_.begin(), frames_.begin(),
                   [](float left, float right) { return 0.5f * (left + right); });
    const bool isSilent =
        std::ranges::all_of(frames_, [](float frame) { return std::fabs(frame) < kSilence; });
    if (isSilent) return show({});
    return show(std::span(frames_).subspan(beginning(), kShown));
}

/// The newest place where the sound rises through 0 behind a trough about as deep as any.
std::size_t ScopeTrace::beginning() const {
    const float deepest =
        *std::min_element(frames_.begin(), frames_.begin() + static_cast<std::ptrdiff_t>(kSought));
    std::size_t place = kSought; // with none the newest frames
    float trough = 0.0f;
    for (std::size_t i = 1; i <= kSought; ++i) {
        trough = std::min(trough, frames_[i - 1]);
        if (frames_[i - 1] >= 0.0f || frames_[i] < 0.0f) continue;
        if (trough <= kDeepEnough * deepest) place = i;
        trough = 0.0f;
    }
    return place;
}

bool ScopeTrace::show(std::span<const float> frames) {
    bool changed = false;
    for (std::size_t c = 0; c < columns_.size(); ++c) {
        Column column;
        if (!frames.empty()) {
            const std::size_t first = c * frames.size() / columns_.size();
            // One frame of the next column too, so that steep lines are not torn.
            const std::size_t last =
                std::min((c + 1) * frames.size() / columns_.size() + 1, frames.size());
            const auto [low, high] =
                std::minmax_element(frames.begin() + static_cast<std::ptrdiff_t>(first),
                                    frames.begin() + static_cast<std::ptrdiff_t>(last));
            column = {*low, *high};
        }
        changed = changed || columns_[c] != column;
        columns_[c] = column;
    }
    return changed;
}

} // namespace zephyra
