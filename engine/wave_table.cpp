#include "engine/wave_table.h"

#include <cmath>
#include <numbers>

namespace zephyra {

namespace {
constexpr double kPi = std::numbers::pi;
}

mokWave::mokWave(const unsigned long& points, int shape) : mokBuffer(points) {
    switch (shape) {
    case kWaveCosine:
        genCosine();
        break;
    case kWaveSaw:
        genSaw();
        break;
    case kWaveSquare:
        genSquare();
        break;
    case kWaveTriangle:
        genTriangle();
        break;
    case kWaveSigmoid:
        genSigmoid();
        break;
    case kWaveDoubleSigmoid:
        genDoubleSigmoid();
        break;
    default:
        genSine();
        break;
    }
}

/// table[n] = shape(n, N) in double, then the guard.
template <typename Shape>
void mokWave::fill(Shape shape) noexcept {
    for (std::uint64_t n = 0; n < size; ++n)
        data[n] = static_cast<float>(shape(static_cast<double>(n), static_cast<double>(size)));
    writeGuardPoint();
}

void mokWave::genSine() noexcept {
    fill([](double n, double N) { return std::sin(2.0 * kPi * n / N); });
}

void mokWave::genCosine() noexcept {
    fill([](double n, double N) { return std::cos(2.0 * kPi * n / N); });
}

void mokWave::genSaw() noexcept {
    fill([](double n, double N) { return 2.0 * n / N - 1.0; });
}

void mokWave::genSquare() noexcept {
    fill([](double n, double N) { return n < N * 0.5 ? 1.0 : -1.0; });
}

void mokWave::genTriangle() noexcept {
    fill([](double n, double N) {
        const double half = N * 0.5;
        return n < half ? 2.0 * n / half - 1.0 : 1.0 - 2.0 * (n - half) / half;
    });
}

void mokWave::genSigmoid() noexcept {
    fill([](double n, double N) { return -std::cos(kPi * n / N); });
}

void mokWave::genDoubleSigmoid() noexcept {
    const auto half = static_cast<double>(size < 2 ? 1 : size / 2);
    fill([half](double n, double) {
        return std::cos(kPi * n / half) * 0.5 + (n < half ? -0.5 : 0.5);
    });
}

} // namespace zephyra
