// Oscillator shapes against their formulas, written once more in long double.

#include "engine/wave_table.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <numbers>

namespace zephyra {
namespace {

using Real = long double;
constexpr Real kPi = std::numbers::pi_v<Real>;

struct Shape {
    int code;
    const char* name;
    std::function<Real(Real n, Real N)> value;
};

const Shape kShapes[] = {
    {0, "sine, for a code that is none", [](Real n, Real N) { return std::sin(2 * kPi * n / N); }},
    {kWaveSine, "sine", [](Real n, Real N) { return std::sin(2 * kPi * n / N); }},
    {kWaveCosine, "cosine", [](Real n, Real N) { return std::cos(2 * kPi * n / N); }},
    {kWaveSaw, "saw", [](Real n, Real N) { return 2 * n / N - 1; }},
    {kWaveSquare, "square", [](Real n, Real N) { return 2 * n < N ? 1 : -1; }},
    {kWaveTriangle, "triangle", [](Real n, Real N) { return 1 - std::abs(4 * n / N - 2); }},
    {6, "sine, for a code left out", [](Real n, Real N) { return std::sin(2 * kPi * n / N); }},
    {kWaveSigmoid, "sigmoid", [](Real n, Real N) { return -std::cos(kPi * n / N); }},
    {kWaveDoubleSigmoid, "double sigmoid",
     [](Real n, Real N) {
         const Real half = std::floor(N / 2);
         return std::cos(kPi * n / half) / 2 + (n < half ? -0.5L : 0.5L);
     }},
};

TEST(Wave, FollowsItsFormulaAndRepeatsItsStartBehindItsEnd) {
    for (const Shape& shape : kShapes)
        for (const unsigned long N : {4096ul, 1001ul, 16ul, 2ul}) {
            const mokWave wave(N, shape.code);
            for (std::uint64_t n = 0; n < N; ++n) {
                const Real expected = shape.value(static_cast<Real>(n), static_cast<Real>(N));
                ASSERT_NEAR(wave.data[n], static_cast<double>(expected), 6e-8)
                    << shape.name << ", point " << n << " of " << N;
            }
            for (std::uint64_t k = 0; k < 3; ++k)
                EXPECT_EQ(wave.data[N + k], wave.data[k % N]) << shape.name;
        }
}

} // namespace
} // namespace zephyra
