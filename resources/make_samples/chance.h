// Chance: the generator's own random numbers, so that the same seed makes the same sound anywhere.
#pragma once

#include <cstddef>
#include <cstdint>

namespace zephyra {

/// A counter whose bits are mixed (Steele, Lea and Flood, "Fast splittable pseudorandom number
/// generators", 2014). The standard library's distributions differ between implementations.
class Chance {
public:
    explicit Chance(std::uint64_t seed) : state_(seed) {}

    /// Evenly distributed in 0 <= x < 1.
    double unit() {
        state_ += 0x9E3779B97F4A7C15u;
        std::uint64_t bits = state_;
        bits = (bits ^ (bits >> 30)) * 0xBF58476D1CE4E5B9u;
        bits = (bits ^ (bits >> 27)) * 0x94D049BB133111EBu;
        bits ^= bits >> 31;
        return static_cast<double>(bits >> 11) * 0x1p-53;
    }

    /// Evenly distributed in low <= x < high.
    double between(double low, double high) { return low + (high - low) * unit(); }

    /// Evenly distributed whole number from 0 to count - 1; count is above 0.
    std::size_t below(std::size_t count) {
        return static_cast<std::size_t>(unit() * static_cast<double>(count));
    }

    /// One sample of white noise, -1 to 1.
    double noise() { return between(-1.0, 1.0); }

private:
    std::uint64_t state_;
};

} // namespace zephyra
