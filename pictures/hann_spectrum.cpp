#include "pictures/hann_spectrum.h"

#include <algorithm>
#include <cmath>
#include <fftw3.h>
#include <mutex>
#include <numbers>

namespace zephyra {

namespace {

/// The library makes and ends plans one at a time; windows of two instances may have two threads.
std::mutex& planning() {
    static std::mutex mutex;
    return mutex;
}

struct FreeFftw {
    void operator()(void* memory) const noexcept { fftwf_free(memory); }
};

} // namespace

struct HannSpectrum::Plan {
    explicit Plan(std::size_t frames)
        : in(static_cast<float*>(fftwf_malloc(sizeof(float) * frames))),
          out(static_cast<fftwf_complex*>(fftwf_malloc(sizeof(fftwf_complex) * (frames / 2 + 1)))) {
        const std::lock_guard lock(planning());
        // Estimated, not measured: a measured plan may differ from run to run, and so the bytes.
        transform =
            fftwf_plan_dft_r2c_1d(static_cast<int>(frames), in.get(), out.get(), FFTW_ESTIMATE);
    }
    Plan(const Plan&) = delete;
    Plan& operator=(const Plan&) = delete;
    ~Plan() {
        const std::lock_guard lock(planning());
        fftwf_destroy_plan(transform);
    }

    std::unique_ptr<float, FreeFftw> in;
    std::unique_ptr<fftwf_complex, FreeFftw> out;
    fftwf_plan transform;
};

HannSpectrum::HannSpectrum(std::size_t frames)
    : window_(frames), power_(frames / 2 + 1), plan_(std::make_unique<Plan>(frames)) {
    for (std::size_t n = 0; n < frames; ++n)
        window_[n] =
            static_cast<float>(0.5 - 0.5 * std::cos(2 * std::numbers::pi * static_cast<double>(n) /
                                                    static_cast<double>(frames)));
}

HannSpectrum::~HannSpectrum() = default;

void HannSpectrum::run(const Stretch& left, const Stretch& right) {
    std::fill(power_.begin(), power_.end(), 0.0f);
    for (const Stretch* const channel : {&left, &right}) add(*channel);
}

void HannSpectrum::add(const Stretch& channel) {
    float* in = plan_->in.get();
    const float* window = window_.data();
    for (const std::span<const float> part : {channel.older, channel.newer})
        for (const float sample : part) *in++ = sample * *window++;
    fftwf_execute(plan_->transform);
    // A sine of height 1 under this window gives a quarter of the size in its bin.
    const float scale = 4.0f / static_cast<float>(frames());
    for (std::size_t bin = 0; bin < power_.size(); ++bin) {
        const float re = plan_->out.get()[bin][0] * scale, im = plan_->out.get()[bin][1] * scale;
        power_[bin] += 0.5f * (re * re + im * im);
    }
}

float HannSpectrum::strongest(double low, double high) const noexcept {
    const std::size_t top = power_.size() - 1;
    const double middle = std::min((low + high) / 2, static_cast<double>(top));
    const auto below = static_cast<std::size_t>(middle);
    const auto share = static_cast<float>(middle - static_cast<double>(below));
    float strongest = power_[below] + share * (power_[std::min(below + 1, top)] - power_[below]);
    for (auto bin = static_cast<std::size_t>(std::ceil(low));
         bin <= top && static_cast<double>(bin) < high; ++bin)
        strongest = std::max(strongest, power_[bin]);
    return strongest;
}

} // namespace zephyra
