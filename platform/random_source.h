// RandomSource: where one instance's random numbers come from.
#pragma once

#include <cstdint>
#include <functional>

namespace zephyra {

/// For random LFOs, the Random envelope, random gestures and random presets; grains draw from
/// generators of their own. MAIN.
class RandomSource {
public:
    using Generator = std::function<std::uint32_t()>;

    /// 32 random bits: from the operating system's generator, unless another one was chosen.
    std::uint32_t next32();

    /// From now on the sequence that std::mt19937 gives after seed, so that a render repeats.
    void seed(std::uint32_t seed);

    /// From now on what generator gives; an empty one brings the operating system's back.
    void setGenerator(Generator generator);

private:
    Generator generator_;
};

} // namespace zephyra
