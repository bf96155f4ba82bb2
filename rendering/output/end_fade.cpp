#include "rendering/output/end_fade.h"

#include <algorithm>
#include <cmath>

namespace zephyra {

EndFade::EndFade(std::uint64_t frames, double sampleRate)
    : frames_(frames),
      length_(std::min(frames, static_cast<std::uint64_t>(std::llround(kSeconds * sampleRate)))) {}

void EndFade::apply(float* left, float* right, std::uint64_t firstFrame,
                    std::uint32_t frames) const {
    const std::uint64_t start = frames_ - length_;
    for (std::uint64_t n = start > firstFrame ? start - firstFrame : 0; n < frames; ++n) {
        const std::uint64_t following = frames_ - 1 - (firstFrame + n);
        const double x = static_cast<double>(following) / static_cast<double>(length_);
        // A polynomial is the same with every compiler, a cosine is not.
        const auto gain = static_cast<float>(x * x * (3 - 2 * x));
        left[n] *= gain;
        right[n] *= gain;
    }
}

} // namespace zephyra
