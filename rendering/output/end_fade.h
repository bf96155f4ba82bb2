// EndFade: brings the last moments of a file to silence, so that it does not end in a click.
#pragma once

#include <cstdint>

namespace zephyra {

/// Of a sound whose length is known. The last kSeconds, or all of a shorter sound, fall along a
/// curve without a corner, to 0 at the last frame. The same frames come out however they are cut
/// into blocks. MAIN.
class EndFade {
public:
    static constexpr double kSeconds = 0.01;

    EndFade(std::uint64_t frames, double sampleRate);

    /// Fades what of these frames, the first of which is firstFrame of the sound, lies in its end.
    void apply(float* left, float* right, std::uint64_t firstFrame, std::uint32_t frames) const;

private:
    std::uint64_t frames_, length_;
};

} // namespace zephyra
