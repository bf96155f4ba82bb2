#include "pictures/spectrum_columns.h"

#include "pictures/hann_spectrum.h"

#include <algorithm>
#include <cmath>
#include <span>

namespace zephyra {

namespace {

constexpr double kWindowSeconds = 0.08; // fine enough for the bass, short enough for attacks
constexpr std::size_t kShortestWindow = 256, kLongestWindow = 32768;
constexpr double kShownDecibels = 80; // below that a mix hides what there is

std::size_t windowFrames(double sampleRate) {
    std::size_t size = kShortestWindow;
    while (size < kLongestWindow && static_cast<double>(size) < kWindowSeconds * sampleRate)
        size *= 2;
    return size;
}

} // namespace

/// The latest frames of both channels, and the spectrum of a window over them.
class SpectrumColumns::Transform {
public:
    explicit Transform(std::size_t size) : left_(size), right_(size), spectrum_(size) {}

    std::size_t size() const noexcept { return spectrum_.frames(); }
    const HannSpectrum& spectrum() const noexcept { return spectrum_; }

    void push(float left, float right) {
        left_[next_] = left;
        right_[next_] = right;
        next_ = next_ + 1 == size() ? 0 : next_ + 1;
    }

    void run() { spectrum_.run(inOrder(left_), inOrder(right_)); }

private:
    HannSpectrum::Stretch inOrder(std::span<const float> ring) const {
        return {ring.subspan(next_), ring.first(next_)};
    }

    std::vector<float> left_, right_;
    std::size_t next_ = 0; // the oldest frame, written next
    HannSpectrum spectrum_;
};

SpectrumColumns::SpectrumColumns(std::uint64_t frames, double sampleRate, std::size_t columns,
                                 std::size_t rows)
    : frames_(std::max<std::uint64_t>(frames, 1)), sampleRate_(sampleRate), columns_(columns),
      rows_(rows), highest_(std::min(kHighestFrequency, sampleRate / 2)),
      transform_(std::make_unique<Transform>(windowFrames(sampleRate))), power_(columns * rows) {
    const std::uint64_t framesPerColumn = frames_ / columns_;
    spectraPerColumn_ =
        std::clamp<std::uint64_t>(2 * framesPerColumn / transform_->size(), 1, kMostSpectra);
}

SpectrumColumns::~SpectrumColumns() = default;

std::uint64_t SpectrumColumns::centre(std::uint64_t index) const noexcept {
    const double share =
        (static_cast<double>(index) + 0.5) / static_cast<double>(columns_ * spectraPerColumn_);
    return static_cast<std::uint64_t>(share * static_cast<double>(frames_));
}

void SpectrumColumns::push(float left, float right) {
    transform_->push(left, right);
    ++seen_;
    while (nextSpectrum_ < columns_ * spectraPerColumn_ &&
           seen_ >= centre(nextSpectrum_) + transform_->size() / 2)
        takeSpectrum();
}

void SpectrumColumns::add(const float* left, const float* right, std::size_t count) {
    for (std::size_t n = 0; n < count; ++n) push(left[n], right[n]);
}

void SpectrumColumns::finish() {
    while (nextSpectrum_ < columns_ * spectraPerColumn_) push(0.0f, 0.0f);
}

void SpectrumColumns::takeSpectrum() {
    const auto column = static_cast<std::size_t>(nextSpectrum_++ / spectraPerColumn_);
    transform_->run();
    const float share = 1.0f / static_cast<float>(spectraPerColumn_);
    for (std::size_t row = 0; row < rows_; ++row)
        power_[column * rows_ + row] += share * rowPower(row);
}

float SpectrumColumns::rowPower(std::size_t row) const {
    const auto frequency = [this](double at) {
        return kLowestFrequency *
               std::pow(highest_ / kLowestFrequency, at / static_cast<double>(rows_));
    };
    const double binsPerHertz = static_cast<double>(transform_->size()) / sampleRate_;
    return transform_->spectrum().strongest(frequency(static_cast<double>(row)) * binsPerHertz,
                                            frequency(static_cast<double>(row) + 1) * binsPerHertz);
}

float SpectrumColumns::decibels(std::size_t column, std::size_t row) const noexcept {
    const float power = power_[column * rows_ + row];
    return power > 1e-20f ? 10.0f * std::log10(power) : kSilenceDecibels;
}

LevelRange levelRange(const SpectrumColumns& spectrum) {
    float loudest = SpectrumColumns::kSilenceDecibels;
    for (std::size_t column = 0; column < spectrum.columns(); ++column)
        for (std::size_t row = 0; row < spectrum.rows(); ++row)
            loudest = std::max(loudest, spectrum.decibels(column, row));
    const double high =
        loudest > SpectrumColumns::kSilenceDecibels ? std::ceil(loudest / 10.0) * 10 : 0.0;
    return {high - kShownDecibels, high};
}

} // namespace zephyra
