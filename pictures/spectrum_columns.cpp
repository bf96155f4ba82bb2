#include "pictures/spectrum_columns.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <fftw3.h>
#include <numbers>

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

struct FreeFftw {
    void operator()(void* memory) const noexcept { fftwf_free(memory); }
};

} // namespace

/// The latest frames of both channels and the power spectrum of a window over them.
class SpectrumColumns::Transform {
public:
    explicit Transform(std::size_t size)
        : left_(size), right_(size), window_(size), power_(size / 2 + 1),
          in_(static_cast<float*>(fftwf_malloc(sizeof(float) * size))),
          out_(static_cast<fftwf_complex*>(fftwf_malloc(sizeof(fftwf_complex) * power_.size()))),
          // Estimated, not measured: a measured plan may differ from run to run, and so the bytes.
          plan_(
              fftwf_plan_dft_r2c_1d(static_cast<int>(size), in_.get(), out_.get(), FFTW_ESTIMATE)) {
        for (std::size_t n = 0; n < size; ++n)
            window_[n] = static_cast<float>(
                0.5 - 0.5 * std::cos(2 * std::numbers::pi * static_cast<double>(n) /
                                     static_cast<double>(size)));
    }
    Transform(const Transform&) = delete;
    Transform& operator=(const Transform&) = delete;
    ~Transform() { fftwf_destroy_plan(plan_); }

    std::size_t size() const noexcept { return window_.size(); }
    const std::vector<float>& power() const noexcept { return power_; }

    void push(float left, float right) {
        left_[next_] = left;
        right_[next_] = right;
        next_ = next_ + 1 == size() ? 0 : next_ + 1;
    }

    /// Mean power of both channels; a sine of full scale gives 1 in its bin.
    void run() {
        std::fill(power_.begin(), power_.end(), 0.0f);
        for (const std::vector<float>* channel : {&left_, &right_}) {
            for (std::size_t n = 0; n < size(); ++n)
                in_.get()[n] = (*channel)[(next_ + n) % size()] * window_[n];
            fftwf_execute(plan_);
            // A sine of height 1 under this window gives a quarter of the size in its bin.
            const float scale = 4.0f / static_cast<float>(size());
            for (std::size_t bin = 0; bin < power_.size(); ++bin) {
                const float re = out_.get()[bin][0] * scale, im = out_.get()[bin][1] * scale;
                power_[bin] += 0.5f * (re * re + im * im);
            }
        }
    }

private:
    std::vector<float> left_, right_, window_, power_;
    std::size_t next_ = 0; // the oldest frame, written next
    std::unique_ptr<float, FreeFftw> in_;
    std::unique_ptr<fftwf_complex, FreeFftw> out_;
    fftwf_plan plan_;
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
    const std::vector<float>& power = transform_->power();
    const double binsPerHertz = static_cast<double>(transform_->size()) / sampleRate_;
    const double low = frequency(static_cast<double>(row)) * binsPerHertz;
    const double high = frequency(static_cast<double>(row) + 1) * binsPerHertz;
    const std::size_t top = power.size() - 1;

    // Between bins the row is interpolated; where it covers several, the strongest shows.
    const double middle = std::min((low + high) / 2, static_cast<double>(top));
    const auto below = static_cast<std::size_t>(middle);
    const auto share = static_cast<float>(middle - static_cast<double>(below));
    float strongest = power[below] + share * (power[std::min(below + 1, top)] - power[below]);
    for (auto bin = static_cast<std::size_t>(std::ceil(low));
         bin <= top && static_cast<double>(bin) < high; ++bin)
        strongest = std::max(strongest, power[bin]);
    return strongest;
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
