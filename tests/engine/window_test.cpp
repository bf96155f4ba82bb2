// Grain envelopes against their formulas, written once more in long double.

#include "engine/grain_window.h"
#include "platform/random_source.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <numbers>
#include <ostream>
#include <string>
#include <vector>

namespace zephyra {
namespace {

using Real = long double;
constexpr Real kPi = std::numbers::pi_v<Real>;

Real sinc(Real x) {
    return x == 0 ? 1 : std::sin(x) / x;
}

/// A cosine series over the phase t = 2π n / N, its coefficients rounded to single precision.
Real series(Real t, float a0, float a1, float a2 = 0, float a3 = 0) {
    return a0 - a1 * std::cos(t) + a2 * std::cos(2 * t) - a3 * std::cos(3 * t);
}

struct Shape {
    const char* name;
    std::function<void(mokWindow&)> generate;
    std::function<Real(std::uint64_t n, std::uint64_t N)> value;
};

std::ostream& operator<<(std::ostream& out, const Shape& shape) {
    return out << shape.name;
}

Real turn(std::uint64_t n, std::uint64_t N) {
    return 2 * kPi * static_cast<Real>(n) / static_cast<Real>(N);
}

const Shape kShapes[] = {
    {"Barlett", [](mokWindow& w) { w.genBarlett(); },
     [](std::uint64_t n, std::uint64_t N) {
         return static_cast<Real>(2 * n <= N ? n : N - n) * 2 / static_cast<Real>(N);
     }},
    {"Gaussian", [](mokWindow& w) { w.genGaussian(); },
     [](std::uint64_t n, std::uint64_t N) {
         const bool rising = n < N / 2;
         const Real x = 12 * static_cast<Real>(rising ? n : n - N / 2) / static_cast<Real>(N) -
                        (rising ? 6 : 0);
         return std::pow(2.718281828459L, -x * x / 2);
     }},
    {"Hanning", [](mokWindow& w) { w.genHanning(); },
     [](std::uint64_t n, std::uint64_t N) { return series(turn(n, N), 0.5f, 0.5f); }},
    {"Hamming", [](mokWindow& w) { w.genHamming(); },
     [](std::uint64_t n, std::uint64_t N) { return series(turn(n, N), 0.54f, 0.46f); }},
    {"Blackman", [](mokWindow& w) { w.genBlackman(); },
     [](std::uint64_t n, std::uint64_t N) { return series(turn(n, N), 0.42f, 0.5f, 0.08f); }},
    {"BlackmanHarris", [](mokWindow& w) { w.genBlackmanHarris(); },
     [](std::uint64_t n, std::uint64_t N) {
         return series(turn(n, N), 0.35875f, 0.48829f, 0.14128f, 0.01168f);
     }},
    {"Nuttall", [](mokWindow& w) { w.genNuttall(); },
     [](std::uint64_t n, std::uint64_t N) {
         return series(turn(n, N), 0.3635819f, 0.4891775f, 0.1365995f, 0.0106411f);
     }},
    {"BarlettHanning", [](mokWindow& w) { w.genBarlettHanning(); },
     [](std::uint64_t, std::uint64_t) { return Real{0.48f}; }},
    {"Sync", [](mokWindow& w) { w.genSync(0.75f); },
     [](std::uint64_t n, std::uint64_t N) {
         if (n == N / 2) return Real{1};
         return 0.75L * (n < N / 2 ? sinc(turn(n, N) - kPi) : sinc(turn(n - N / 2, N)));
     }},
    {"Rectangular", [](mokWindow& w) { w.genRectangular(); },
     [](std::uint64_t, std::uint64_t) { return Real{1}; }},
    {"Sine", [](mokWindow& w) { w.genSine(); },
     [](std::uint64_t n, std::uint64_t N) { return std::sin(turn(n, N)); }},
    {"Pulse", [](mokWindow& w) { w.genPulse(); },
     [](std::uint64_t n, std::uint64_t N) { return sinc(3 * turn(n, N)); }},
    {"Pulse2", [](mokWindow& w) { w.genPulse2(); },
     [](std::uint64_t n, std::uint64_t N) {
         const std::uint64_t half = N / 2;
         if (n == 2 * half) return Real{0}; // the odd point of an odd table
         return sinc(2 * turn(n >= half ? n - half : half - 1 - n, half));
     }},
    {"BlackmanMok", [](mokWindow& w) { w.genBlackmanMok(); },
     [](std::uint64_t n, std::uint64_t N) {
         return 0.5L * series(turn(n, N), 0.42f, 0.5f, 0.08f) + 0.5L;
     }},
};

class WindowShape : public testing::TestWithParam<Shape> {};

TEST_P(WindowShape, FollowsItsFormulaAndRepeatsItsStartBehindItsEnd) {
    for (const unsigned long N : {4096ul, 4095ul, 1000ul, 16ul, 3ul, 2ul, 1ul}) {
        mokWindow window(N, kWindowRectangular);
        GetParam().generate(window);
        for (std::uint64_t n = 0; n < N; ++n)
            ASSERT_NEAR(window.data[n], static_cast<double>(GetParam().value(n, N)), 6e-8)
                << "point " << n << " of " << N;
        for (std::uint64_t k = 0; k < 3; ++k)
            EXPECT_EQ(window.data[N + k], window.data[k % N]) << "guard of " << N;
    }
}

INSTANTIATE_TEST_SUITE_P(All, WindowShape, testing::ValuesIn(kShapes),
                         [](const auto& shape) { return std::string(shape.param.name); });

TEST(Window, IsChosenByItsCodeAndGaussianForAnyOther) {
    const char* const expected[] = {"Gaussian", "Barlett",  "Gaussian",       "Hanning",
                                    "Hamming",  "Blackman", "BlackmanHarris", "BarlettHanning",
                                    "Nuttall",  "Sync",     "Rectangular",    "Gaussian"};
    for (int code = 0; code < 12; ++code) {
        const mokWindow window(64, code);
        for (const Shape& shape : kShapes) {
            mokWindow other(64, kWindowRectangular);
            shape.generate(other);
            const bool equal = std::equal(window.getPtr(), window.getPtr() + 64, other.getPtr());
            EXPECT_EQ(equal, std::string(shape.name) == expected[code]) << code << shape.name;
        }
    }
}

TEST(Window, OfNoPointsHasTen) {
    EXPECT_EQ(mokWindow(0, kWindowHanning).size, 10u);
}

TEST(Window, RandomMapsThirtyTwoBitsToBipolarValues) {
    std::vector<std::uint32_t> bits = {0u, 0x80000000u, 0xc0000000u, 0xffffffffu};
    std::size_t next = 0;
    const RandomSource before = setRandomSource([&] { return bits[next++ % bits.size()]; });
    mokWindow window(4, kWindowRectangular);
    window.genRandom();
    setRandomSource(before);
    const float expected[] = {-1.0f, 0.0f, 0.5f, 1.0f, -1.0f, 0.0f, 0.5f};
    for (std::size_t n = 0; n < std::size(expected); ++n)
        EXPECT_NEAR(window.data[n], expected[n], 6e-8) << n;
}

} // namespace
} // namespace zephyra
