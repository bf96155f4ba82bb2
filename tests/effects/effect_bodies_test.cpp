// Every level's loops against the plain per-sample model, bit for bit.
#include "effects/effect_bodies.h"

#include "platform/flush_denormals.h"
#include "tests/support/block_partition.h"
#include "tests/support/literal_effects.h"

#include <gtest/gtest.h>

#include <bit>
#include <limits>
#include <random>

namespace zephyra {
namespace {

constexpr std::int32_t kLongestBlock = 8192;
constexpr std::int64_t kFirstWrite = kEchoLineSize - 1001; // wraps early, while glides still move

struct Stereo {
    std::vector<float> side[2];
};

Stereo noise(std::int32_t frames) {
    std::mt19937 random(1);
    std::uniform_real_distribution<float> uniform(-1, 1);
    Stereo signal;
    for (auto& side : signal.side)
        for (std::int32_t n = 0; n < frames; ++n) side.push_back(uniform(random));
    return signal;
}

bool sameBits(float a, float b) {
    return std::bit_cast<std::uint32_t>(a) == std::bit_cast<std::uint32_t>(b) ||
           (std::isnan(a) && std::isnan(b));
}

void expectSameBits(const Stereo& got, const Stereo& expected) {
    for (int side = 0; side < 2; ++side)
        for (std::size_t n = 0; n < expected.side[side].size(); ++n)
            ASSERT_TRUE(sameBits(got.side[side][n], expected.side[side][n]))
                << "side " << side << " sample " << n << ": got " << got.side[side][n]
                << ", expected " << expected.side[side][n];
}

/// In place, block by block, as the stream runs it.
template <typename Body, typename Block>
void runInBlocks(Body body, Block& block, Stereo& signal) {
    std::size_t at = 0;
    const auto frames = static_cast<std::int32_t>(signal.side[0].size());
    for (std::int32_t length : randomPartition(frames, kLongestBlock, 6)) {
        for (int side = 0; side < 2; ++side)
            block.in[side] = block.out[side] = signal.side[side].data() + at;
        block.frames = length;
        body(block);
        at += static_cast<std::size_t>(length);
    }
}

struct EchoCase {
    double startTime[2], time[2];
    double startFeedback[2], feedback[2];
};

Stereo runEcho(const EffectBodies& bodies, const EchoCase& c, Stereo signal,
               std::vector<double> (&lines)[2]) {
    EchoBlock block{};
    for (int side = 0; side < 2; ++side) {
        lines[side].assign(kEchoLineSize, 0);
        block.line[side] = lines[side].data();
        block.writeIndex[side] = kFirstWrite;
        block.smoothed[side] = c.startTime[side];
        block.target[side] = c.time[side];
        block.smoothed[2 + side] = c.startFeedback[side];
        block.target[2 + side] = c.feedback[side];
    }
    runInBlocks(bodies.echo, block, signal);
    return signal;
}

Stereo runLiteralEcho(const EchoCase& c, Stereo signal, std::vector<double> (&lines)[2]) {
    for (int side = 0; side < 2; ++side) {
        LiteralEcho echo;
        echo.writeIndex = kFirstWrite;
        echo.time = c.startTime[side];
        echo.targetTime = c.time[side];
        echo.feedback = c.startFeedback[side];
        echo.targetFeedback = c.feedback[side];
        for (float& sample : signal.side[side]) sample = echo(sample);
        lines[side] = echo.line;
    }
    return signal;
}

std::vector<CpuLevel> levels() {
    std::vector<CpuLevel> offered;
    for (CpuLevel level : {CpuLevel::baseline, CpuLevel::v3, CpuLevel::v4})
        if (level <= supportedCpuLevel()) offered.push_back(level);
    return offered;
}

void expectEchoAsLiteral(const EchoCase& c, const Stereo& signal) {
    const FlushDenormals flush;
    std::vector<double> expectedLines[2], lines[2];
    const Stereo expected = runLiteralEcho(c, signal, expectedLines);
    for (CpuLevel level : levels()) {
        SCOPED_TRACE(testing::Message()
                     << cpuLevelName(level) << ", times " << c.time[0] << " and " << c.time[1]);
        expectSameBits(runEcho(effectBodiesFor(level), c, signal, lines), expected);
        EXPECT_TRUE(lines[0] == expectedLines[0] && lines[1] == expectedLines[1]);
    }
}

TEST(EchoBody, AtRestGivesTheBitsOfThePlainLoopForEveryDelay) {
    const double delays[][2] = {{-3, 0},
                                {0.5, 1},
                                {1.25, 2},
                                {3.999, 4},
                                {4.5, 5},
                                {7.25, 8},
                                {15.9, 16},
                                {17, 44.1},
                                {1000.3, 11025},
                                {13230, 65535.7},
                                {131072, 196608.5},
                                {199999.99999, 200000},
                                {200000.1, 1e300},
                                {1 + 1e-15, 65536 - 1e-11}};
    const Stereo signal = noise(2 * kEchoLineSize + 999);
    for (const auto& d : delays)
        expectEchoAsLiteral({{d[0], d[1]}, {d[0], d[1]}, {0.8, -0.9}, {0.8, -0.9}}, signal);
}

TEST(EchoBody, GlidingGivesTheBitsOfThePlainLoop) {
    const EchoCase cases[] = {
        {{0, 0}, {13230, 11025}, {0, 0}, {0.341, 0.231}},
        {{0, 0}, {40, 16.5}, {0.3, 0}, {0.98, 0.5}},            // through the shortest delays
        {{160, 150}, {-1e6, -1e6}, {0.5, 0.5}, {0.5, 0.5}},     // a plunge within a few samples
        {{200000, 4410}, {-50, 250000}, {0, 0.5}, {0.9, -0.5}}, // past both ends
        {{13230, 20}, {13230, 20}, {0, 0.9}, {0.7, 0.9}},       // a feedback alone
    };
    for (const EchoCase& c : cases) expectEchoAsLiteral(c, noise(kEchoLineSize + 70000));
}

TEST(EchoBody, FadesATailIntoDenormalsLikeThePlainLoop) {
    Stereo impulse = noise(60000);
    for (auto& side : impulse.side) std::fill(side.begin() + 1, side.end(), 0.0f);
    expectEchoAsLiteral({{20, 33.3}, {20, 33.3}, {0.4, 1e-3}, {0.4, 1e-3}}, impulse);
}

TEST(EchoBody, KeepsItsLinesFinite) {
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    Stereo signal = noise(40000);
    for (std::size_t n = 0; n < 2000; n += 97) {
        signal.side[0][n] = n % 2 ? kInfinity : std::nanf("");
        signal.side[1][n] = n % 3 ? -kInfinity : std::numeric_limits<float>::max();
    }
    const EchoCase runaways[] = {{{30, 21}, {30, 21}, {1e30, 7}, {1e30, 7}},
                                 {{30, 21}, {3000, 2}, {1e30, 7}, {1, 1e300}}};
    for (const EchoCase& c : runaways) {
        expectEchoAsLiteral(c, signal);
        std::vector<double> lines[2];
        runEcho(effectBodiesFor(supportedCpuLevel()), c, signal, lines);
        for (const auto& line : lines)
            for (double value : line) ASSERT_TRUE(std::isfinite(value));
    }
}

TEST(EchoBody, GlidesSixtyThreePercentOfATimeStepIn7019Samples) {
    std::vector<double> lines[2];
    for (auto& line : lines) line.assign(kEchoLineSize, 0);
    Stereo silence;
    for (auto& side : silence.side) side.assign(7019, 0.0f);
    EchoBlock block{{lines[0].data(), lines[1].data()}, {}, {0, 1000}, {1000, 0}, {}, {}, 7019};
    for (int side = 0; side < 2; ++side)
        block.in[side] = block.out[side] = silence.side[side].data();
    effectBodiesFor(supportedCpuLevel()).echo(block);
    EXPECT_NEAR(block.smoothed[0], 632, 0.5);
    EXPECT_NEAR(block.smoothed[1], 368, 0.5);
}

struct RingCase {
    double increment, phase;
    double startAmount, amount;
};

Stereo runRing(const EffectBodies& bodies, const RingCase& c, Stereo signal, double& endPhase) {
    std::vector<double> table = LiteralRing::makeTable();
    table.push_back(table[0]);
    RingBlock block{table.data(), c.phase, c.increment, c.startAmount, c.amount, {}, {}, 0};
    runInBlocks(bodies.ring, block, signal);
    endPhase = block.phase;
    return signal;
}

Stereo runLiteralRing(const RingCase& c, Stereo signal, double& endPhase) {
    LiteralRing ring;
    ring.increment = c.increment;
    ring.phase = c.phase;
    ring.amount = c.startAmount;
    ring.targetAmount = c.amount;
    for (std::size_t n = 0; n < signal.side[0].size(); ++n) {
        const float in[2] = {signal.side[0][n], signal.side[1][n]};
        float out[2];
        ring(in, out);
        for (int side = 0; side < 2; ++side) signal.side[side][n] = out[side];
    }
    endPhase = ring.phase;
    return signal;
}

TEST(RingBody, GivesTheBitsOfThePlainLoopForEveryFrequency) {
    const FlushDenormals flush;
    const double increments[] = {0,
                                 0.1 / 44100,
                                 220.0 / 44100,
                                 1400.0 / 44100,
                                 8000.0 / 44100,
                                 0.25,
                                 0.5,
                                 0.75,
                                 1,
                                 0x1p-12, // meets 1 exactly
                                 0x1p-10 + 0x1p-54,
                                 3 * 0x1p-10 + 0x1p-54, // half-way between two phases near 1
                                 0x1p-10 + 0x1p-53 + 0x1p-54,
                                 0x1p-9 + 0x1p-55,
                                 1 - 0x1p-53,
                                 3.3,
                                 1e15,
                                 1e300,
                                 1e-300,
                                 -0.1 / 44100,
                                 -220.0 / 44100,
                                 -8000.0 / 44100,
                                 -0.5,
                                 -1e-18,
                                 -0x1p-11 - 0x1p-54,
                                 -7.7,
                                 -1e300};
    // Four steps of the first tie's increment on, the phase is the first in its half, and odd.
    const double beforeATie = 0.5 - 0x1p-11 + 0x1p-54 - 3 * (0x1p-10 + 0x1p-54);
    const Stereo signal = noise(50000);
    for (double increment : increments)
        for (double phase : {0.0, 0.3, beforeATie, 1.0}) {
            const RingCase rest{increment, phase, 0.7, 0.7}, glide{increment, phase, 0, 1};
            for (const RingCase& c : {rest, glide}) {
                double expectedPhase, phaseThere;
                const Stereo expected = runLiteralRing(c, signal, expectedPhase);
                for (CpuLevel level : levels()) {
                    SCOPED_TRACE(testing::Message() << cpuLevelName(level) << ", increment "
                                                    << increment << " from " << phase);
                    expectSameBits(runRing(effectBodiesFor(level), c, signal, phaseThere),
                                   expected);
                    EXPECT_EQ(phaseThere, expectedPhase);
                }
            }
        }
}

} // namespace
} // namespace zephyra
