// Grain envelopes, their menu and oscillator shapes, against their formulas written once more in
// long double.

#include "engine/envelope_menu.h"
#include "engine/wave_table.h"
#include "platform/random_source.h"
#include "tests/support/testing.h"

namespace zephyra {
namespace {

using Real = long double;
constexpr Real kPi = std::numbers::pi_v<Real>;

using Formula = Real (*)(Real n, Real N); // point n of N

Real turn(Real n, Real N) {
    return 2 * kPi * n / N;
}

Real sinc(Real x) {
    return x == 0 ? 1 : std::sin(x) / x;
}

/// A cosine series over the phase t = 2π n / N, its coefficients rounded to single precision.
Real series(Real t, float a0, float a1, float a2 = 0, float a3 = 0) {
    return a0 - a1 * std::cos(t) + a2 * std::cos(2 * t) - a3 * std::cos(3 * t);
}

void expectShape(const mokBuffer& table, Formula value, const char* name) {
    for (std::uint64_t n = 0; n < table.size; ++n) {
        const Real expected = value(static_cast<Real>(n), static_cast<Real>(table.size));
        ASSERT_NEAR(table.data[n], static_cast<double>(expected), 6e-8)
            << name << ", point " << n << " of " << table.size;
    }
    for (std::uint64_t k = 0; k < 3; ++k)
        EXPECT_EQ(table.data[table.size + k], table.data[k % table.size]) << name << ", guard";
}

const struct {
    const char* name;
    int code, entry; // of the constructor and the menu; -1 for none
    void (*generate)(mokWindow&);
    Formula value;
} kWindows[] = {
    {"Barlett", kWindowBarlett, 3, [](mokWindow& w) { w.genBarlett(); },
     [](Real n, Real N) { return 1 - std::abs(2 * n / N - 1); }},
    {"Gaussian", kWindowGaussian, 0, [](mokWindow& w) { w.genGaussian(); },
     [](Real n, Real N) {
         const Real half = std::floor(N / 2);
         const Real x = 12 * (n < half ? n : n - half) / N - (n < half ? 6 : 0);
         return std::pow(2.718281828459L, -x * x / 2);
     }},
    {"Hanning", kWindowHanning, 2, [](mokWindow& w) { w.genHanning(); },
     [](Real n, Real N) { return series(turn(n, N), 0.5f, 0.5f); }},
    {"Hamming", kWindowHamming, 5, [](mokWindow& w) { w.genHamming(); },
     [](Real n, Real N) { return series(turn(n, N), 0.54f, 0.46f); }},
    {"Blackman", kWindowBlackman, -1, [](mokWindow& w) { w.genBlackman(); },
     [](Real n, Real N) { return series(turn(n, N), 0.42f, 0.5f, 0.08f); }},
    {"BlackmanHarris", kWindowBlackmanHarris, 1, [](mokWindow& w) { w.genBlackmanHarris(); },
     [](Real n, Real N) { return series(turn(n, N), 0.35875f, 0.48829f, 0.14128f, 0.01168f); }},
    {"Nuttall", kWindowNuttall, -1, [](mokWindow& w) { w.genNuttall(); },
     [](Real n, Real N) {
         return series(turn(n, N), 0.3635819f, 0.4891775f, 0.1365995f, 0.0106411f);
     }},
    {"BarlettHanning", kWindowBarlettHanning, -1, [](mokWindow& w) { w.genBarlettHanning(); },
     [](Real, Real) { return Real{0.48f}; }},
    {"Sync", kWindowSync, 4, [](mokWindow& w) { w.genSync(0.75f); },
     [](Real n, Real N) {
         const Real half = std::floor(N / 2);
         if (n == half) return Real{1};
         return 0.75L * (n < half ? sinc(turn(n, N) - kPi) : sinc(turn(n - half, N)));
     }},
    {"Rectangular", kWindowRectangular, 7, [](mokWindow& w) { w.genRectangular(); },
     [](Real, Real) { return Real{1}; }},
    {"Sine", -1, 10, [](mokWindow& w) { w.genSine(); },
     [](Real n, Real N) { return std::sin(turn(n, N)); }},
    {"Pulse", -1, 8, [](mokWindow& w) { w.genPulse(); },
     [](Real n, Real N) { return sinc(3 * turn(n, N)); }},
    {"Pulse2", -1, 9, [](mokWindow& w) { w.genPulse2(); },
     [](Real n, Real N) {
         const Real half = std::floor(N / 2);
         if (n == 2 * half) return Real{0}; // the odd point of an odd table
         return sinc(2 * turn(n >= half ? n - half : half - 1 - n, half));
     }},
    {"BlackmanMok", -1, 6, [](mokWindow& w) { w.genBlackmanMok(); },
     [](Real n, Real N) { return 0.5L * series(turn(n, N), 0.42f, 0.5f, 0.08f) + 0.5L; }}};

TEST(Window, FollowsItsFormulaAndRepeatsItsStartBehindItsEnd) {
    RandomSource random;
    for (const auto& shape : kWindows) {
        for (const unsigned long N : {4096ul, 4095ul, 1000ul, 16ul, 3ul, 2ul, 1ul}) {
            mokWindow window(N, kWindowRectangular);
            shape.generate(window);
            expectShape(window, shape.value, shape.name);
        }
        if (shape.code >= 0) expectShape(mokWindow(64, shape.code), shape.value, shape.name);
        if (shape.entry < 0) continue;
        const auto window = makeEnvelope(static_cast<std::size_t>(shape.entry), random);
        ASSERT_TRUE(window && window->size == 4096);
        expectShape(*window, shape.value, shape.name);
    }
    for (const int other : {0, 11}) // is Gaussian
        expectShape(mokWindow(64, other), kWindows[1].value, "another code");
    EXPECT_EQ(mokWindow(0, kWindowHanning).size, 10u);
}

TEST(Window, RandomMapsThirtyTwoBitsToBipolarValues) {
    std::vector<std::uint32_t> bits = {0u, 0x80000000u, 0xc0000000u, 0xffffffffu};
    std::size_t next = 0;
    RandomSource random;
    random.setGenerator([&] { return bits[next++ % bits.size()]; });
    const auto window = makeEnvelope(11, random);
    const float expected[] = {-1.0f, 0.0f, 0.5f, 1.0f};
    for (std::size_t n = 0; n < 4099; ++n) ASSERT_NEAR(window->data[n], expected[n % 4], 6e-8) << n;
}

TEST(Wave, FollowsItsFormulaAndRepeatsItsStartBehindItsEnd) {
    const Formula sine = [](Real n, Real N) { return std::sin(2 * kPi * n / N); };
    const std::tuple<int, const char*, Formula> cases[] = {
        {0, "sine, for a code that is none", sine},
        {kWaveSine, "sine", sine},
        {kWaveCosine, "cosine", [](Real n, Real N) { return std::cos(2 * kPi * n / N); }},
        {kWaveSaw, "saw", [](Real n, Real N) { return 2 * n / N - 1; }},
        {kWaveSquare, "square", [](Real n, Real N) { return 2 * n < N ? Real{1} : Real{-1}; }},
        {kWaveTriangle, "triangle", [](Real n, Real N) { return 1 - std::abs(4 * n / N - 2); }},
        {6, "sine, for a code left out", sine},
        {kWaveSigmoid, "sigmoid", [](Real n, Real N) { return -std::cos(kPi * n / N); }},
        {kWaveDoubleSigmoid, "double sigmoid", [](Real n, Real N) {
             const Real half = std::floor(N / 2);
             return std::cos(kPi * n / half) / 2 + (n < half ? -0.5L : 0.5L);
         }}};
    for (const auto& [code, name, value] : cases)
        for (const unsigned long N : {4096ul, 1001ul, 16ul, 2ul})
            expectShape(mokWave(N, code), value, name);
}

TEST(EnvelopeMenu, NamesItsEntriesAndFindsThemByAnyReasonableSpelling) {
    std::string names;
    for (const char* name : kEnvelopeMenu) (names += name) += '\n';
    EXPECT_EQ(names, "Grain Envelope: Gaussian\nGrain Envelope: Blackman-Harris\n"
                     "Grain Envelope: Hanning\nGrain Envelope: Barlett\nGrain Envelope: Sync\n"
                     "Grain Envelope: Hamming\nGrain Envelope: Mok\nGrain Envelope: Rectangular\n"
                     "Grain Envelope: Pulse 1\nGrain Envelope: Pulse 2\n"
                     "Grain Envelope: Sinusoidal\nGrain Envelope: Random\n");
    EXPECT_EQ(kDefaultEnvelope, 2u);
    RandomSource random;
    EXPECT_EQ(makeEnvelope(12, random), nullptr);
    for (const auto& [name, entry] : {std::pair("Grain Envelope: Hanning", 2u),
                                      {"  H A N N I N G ", 2u},
                                      {"grainenvelope:hamming", 5u},
                                      {"blackman harris", 1u},
                                      {"pulse1", 8u}})
        EXPECT_EQ(findEnvelope(name), entry) << name;
    for (const char* none : {"Pulse", "Pulse 12", "Han", "Grain Envelope: ", ""})
        EXPECT_FALSE(findEnvelope(none)) << none;
}

} // namespace
} // namespace zephyra
