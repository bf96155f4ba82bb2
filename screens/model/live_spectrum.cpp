#include "screens/model/live_spectrum.h"

#include <algorithm>
#include <cmath>

namespace zephyra {

namespace {

constexpr float kSilence = 1e-6f; // -120 dB, far below the floor
constexpr float kStill = 0.05f;   // dB; what moves less than that has arrived

bool isQuiet(std::span<const float> frames) {
    return std::ranges::all_of(frames, [](float frame) { return std::fabs(frame) < kSilence; });
}

} // namespace

double LiveSpectrum::placeOf(double hertz) {
    return std::log(hertz / kLowest) / std::log(kHighest / kLowest);
}

double LiveSpectrum::frequencyAt(double place) {
    return kLowest * std::pow(kHighest / kLowest, place);
}

void LiveSpectrum::setColumns(std::size_t count) {
    decibels_.assign(count, kFloor);
    targets_ = decibels_;
    rate_ = 0.0;
}

void LiveSpectrum::begin(const Oscilloscope& oscilloscope) {
    setColumns(decibels_.size());
    arrival_.begin(oscilloscope.added());
}

void LiveSpectrum::placeColumns(double sampleRate) {
    if (sampleRate == rate_) return;
    rate_ = sampleRate;
    edges_.resize(decibels_.size() + 1);
    for (std::size_t edge = 0; edge < edges_.size(); ++edge)
        edges_[edge] =
            frequencyAt(static_cast<double>(edge) / static_cast<double>(decibels_.size())) *
            static_cast<double>(kFrames) / sampleRate;
}

bool LiveSpectrum::advance(const Oscilloscope& oscilloscope, double sampleRate,
                           const FrameTime& time) {
    const SoundArrival::State state = arrival_.look(oscilloscope.added(), time);
    if (decibels_.empty() || !(sampleRate > 0.0)) return false;
    placeColumns(sampleRate);
    if (state == SoundArrival::State::fresh) read(oscilloscope);
    if (state == SoundArrival::State::silence) std::ranges::fill(targets_, kFloor);
    return follow(time.elapsed);
}

void LiveSpectrum::read(const Oscilloscope& oscilloscope) {
    static_assert(kFrames <= Oscilloscope::kFrames / 2, "RENDER writes meanwhile");
    left_.resize(kFrames);
    right_.resize(kFrames);
    oscilloscope.newest(0, left_, arrival_.begins());
    oscilloscope.newest(1, right_, arrival_.begins());
    if (isQuiet(left_) && isQuiet(right_)) {
        std::ranges::fill(targets_, kFloor);
        return;
    }
    spectrum_.run({left_}, {right_});
    for (std::size_t column = 0; column < targets_.size(); ++column)
        targets_[column] = levelOf(column);
}

float LiveSpectrum::levelOf(std::size_t column) const {
    if (edges_[column] >= static_cast<double>(kFrames / 2)) return kFloor; // above half the rate
    const float power = spectrum_.strongest(edges_[column], edges_[column + 1]);
    return power > 0.0f ? std::max(10.0f * std::log10(power), kFloor) : kFloor;
}

bool LiveSpectrum::follow(double seconds) {
    const double time = std::max(seconds, 0.0);
    const auto rise = static_cast<float>(1.0 - std::exp(-time / kRise));
    const auto fall = static_cast<float>(kFall * time);
    bool changed = false;
    for (std::size_t column = 0; column < decibels_.size(); ++column) {
        float& shown = decibels_[column];
        const float wanted = targets_[column], before = shown;
        if (wanted > shown)
            shown = wanted - shown < kStill ? wanted : shown + rise * (wanted - shown);
        else
            shown = std::max(wanted, shown - fall);
        changed = changed || shown != before;
    }
    return changed;
}

} // namespace zephyra
