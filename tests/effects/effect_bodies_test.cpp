// Every level's loops against the plain per-sample model, bit for bit.
#include "effects/effect_bodies.h"

#include "platform/threads/flush_denormals.h"
#include "tests/support/block_partition.h"
#include "tests/support/literal_effects.h"
#include "tests/support/testing.h"

namespace zephyra {
namespace {

constexpr std::int32_t kLongestBlock = 8192;
constexpr std::int64_t kFirstWrite = kEchoLineSize - 1001; // wraps early, while glides still move

/// Both channels, and what an effect leaves behind: the echo its lines, the ring its phase.
struct Stereo {
    std::vector<float> side[2];
    std::vector<double> line[2];
    double phase = 0;
};

Stereo noise(std::int32_t frames) {
    std::mt19937 random(1);
    std::uniform_real_distribution<float> uniform(-1, 1);
    Stereo signal;
    for (auto& side : signal.side)
        for (std::int32_t n = 0; n < frames; ++n) side.push_back(uniform(random));
    return signal;
}

/// Expects run to give the bits of expected at every level.
template <typename Run>
void expectBits(const Stereo& expected, Run run) {
    const auto bits = [](float value) {
        return std::isnan(value) ? 0x7fc00000u : std::bit_cast<std::uint32_t>(value);
    };
    for (CpuLevel level : {CpuLevel::baseline, CpuLevel::v3, CpuLevel::v4}) {
        if (level > supportedCpuLevel()) continue;
        const Stereo got = run(effectBodiesFor(level));
        for (int side = 0; side < 2; ++side) {
            const auto [one, other] =
                std::ranges::mismatch(got.side[side], expected.side[side], {}, bits, bits);
            ASSERT_EQ(one, got.side[side].end())
                << cpuLevelName(level) << ", side " << side << " sample "
                << one - got.side[side].begin() << ": got " << *one << ", expected " << *other;
            EXPECT_TRUE(got.line[side] == expected.line[side]) << cpuLevelName(level);
        }
        EXPECT_EQ(got.phase, expected.phase) << cpuLevelName(level);
    }
}

/// In place, block by block, as the stream runs it.
template <typename Body, typename Block>
void runInBlocks(Body body, Block& block, Stereo& signal) {
    std::size_t at = 0;
    const auto frames = static_cast<std::int32_t>(signal.side[0].size());
    for (std::int32_t length : randomPartition(frames, kLongestBlock, 6)) {
        for (int side = 0; side < 2; ++side)
            block.in[side] = block.out[side] = signal.side[side].data() + at;
        for (std::int32_t each : {-length, length}) { // fewer than 1 are none
            block.frames = each;
            body(block);
        }
        at += static_cast<std::size_t>(length);
    }
}

struct EchoCase {
    double startTime[2], time[2];
    double startFeedback[2], feedback[2];
};

/// What lines hold that were forgotten reads as the literal loop's silence.
enum class Lines { cleared, forgotten };

void expectEchoAsLiteral(const EchoCase& c, const Stereo& signal, Lines lines = Lines::cleared) {
    const bool forgotten = lines == Lines::forgotten;
    SCOPED_TRACE(testing::Message() << "times " << c.time[0] << " and " << c.time[1]
                                    << (forgotten ? ", forgotten lines" : ""));
    const FlushDenormals flush;
    Stereo expected = signal;
    for (int side = 0; side < 2; ++side) {
        LiteralEcho echo{c.startTime[side], c.startFeedback[side], c.time[side], c.feedback[side]};
        echo.writeIndex = kFirstWrite;
        for (float& sample : expected.side[side]) sample = echo(sample);
        expected.line[side] = echo.line;
    }
    expectBits(expected, [&](const EffectBodies& bodies) {
        Stereo got = signal;
        for (auto& line : got.line) line.assign(kEchoLineSize, forgotten ? 0.7 : 0);
        EchoBlock block{{got.line[0].data(), got.line[1].data()},
                        {kFirstWrite, kFirstWrite},
                        {c.startTime[0], c.startTime[1], c.startFeedback[0], c.startFeedback[1]},
                        {c.time[0], c.time[1], c.feedback[0], c.feedback[1]},
                        {},
                        {},
                        0,
                        forgotten ? 0 : kEchoLineSize};
        runInBlocks(bodies.echo, block, got);
        return got;
    });
}

TEST(EchoBody, AtRestGivesTheBitsOfThePlainLoopForEveryDelay) {
    std::vector<double> delays = {1 + 1e-15, 65536 - 1e-11, 199999.99999, 200000, 200000.1, 1e300};
    for (double more :
         {-3.0, 0.0,  0.5,  1.0,  1.25, 2.0,    3.999,   4.0,     4.5,     5.0,      7.25,
          8.0,  15.9, 16.0, 17.0, 44.1, 1000.3, 11025.0, 13230.0, 65535.7, 131072.0, 196608.5})
        delays.push_back(more);
    const int rounds = kIsWatched ? 1 : 2; // the line's end is passed once more
    const Stereo signal = noise(rounds * kEchoLineSize + 1999);
    for (std::size_t i = 0; i < delays.size(); i += 2) {
        const double left = delays[i], right = delays[i + 1];
        for (Lines lines : {Lines::cleared, Lines::forgotten})
            expectEchoAsLiteral({{left, right}, {left, right}, {0.8, -0.9}, {0.8, -0.9}}, signal,
                                lines);
    }
}

TEST(EchoBody, GlidingGivesTheBitsOfThePlainLoop) {
    const EchoCase cases[] = {
        {{0, 0}, {13230, 11025}, {0, 0}, {0.341, 0.231}},
        {{0, 0}, {40, 16.5}, {0.3, 0}, {0.98, 0.5}},            // through the shortest delays
        {{160, 150}, {-1e6, -1e6}, {0.5, 0.5}, {0.5, 0.5}},     // a plunge within a few samples
        {{200000, 4410}, {-50, 250000}, {0, 0.5}, {0.9, -0.5}}, // past both ends
        {{13230, 20}, {13230, 20}, {0, 0.9}, {0.7, 0.9}},       // a feedback alone
        {{200000, 4410}, {20, 16.5}, {0.5, 0.5}, {0.5, 0.5}},   // from far back
    };
    for (const EchoCase& c : cases)
        for (Lines lines : {Lines::cleared, Lines::forgotten})
            expectEchoAsLiteral(c, noise(kEchoLineSize + 70000), lines);
}

TEST(EchoBody, FadesATailIntoDenormalsAndKeepsItsLinesFiniteLikeThePlainLoop) {
    Stereo impulse = noise(60000), bad = noise(40000);
    for (auto& side : impulse.side) std::fill(side.begin() + 1, side.end(), 0.0f);
    expectEchoAsLiteral({{20, 33.3}, {20, 33.3}, {0.4, 1e-3}, {0.4, 1e-3}}, impulse);
    for (std::size_t n = 0; n < 2000; n += 97) {
        bad.side[0][n] = n % 2 ? INFINITY : std::nanf("");
        bad.side[1][n] = n % 3 ? -INFINITY : std::numeric_limits<float>::max();
    }
    expectEchoAsLiteral({{30, 21}, {30, 21}, {1e30, 7}, {1e30, 7}}, bad);
    expectEchoAsLiteral({{30, 21}, {3000, 2}, {1e30, 7}, {1, 1e300}}, bad);
}

TEST(RingBody, GivesTheBitsOfThePlainLoopForEveryFrequency) {
    const FlushDenormals flush;
    // 2^-12 meets 1 exactly; the long fractions lie half-way between two phases near 1.
    std::vector<double> increments = {0x1p-12,
                                      0x1.00000000001p-10,
                                      0x1.800000000008p-9,
                                      0x1.00000000003p-10,
                                      0x1.000000000004p-9,
                                      0x1.fffffffffffffp-1,
                                      -0x1.00000000002p-11};
    for (double more :
         {0.0, 0.25, 0.5, 0.75, 1.0, 3.3, 1e15, 1e300, 1e-300, -0.5, -1e-18, -7.7, -1e300})
        increments.push_back(more);
    for (double hz : {0.1, 220.0, 1400.0, 8000.0, -0.1, -220.0, -8000.0})
        increments.push_back(hz / 44100);
    // Four steps of the first tie's increment on, the phase is the first in its half, and odd.
    const double beforeATie = 0.5 - 0x1p-11 + 0x1p-54 - 3 * 0x1.00000000001p-10;
    std::vector<double> table = LiteralRing::makeTable();
    table.push_back(table[0]);
    const Stereo signal = noise(20000);
    for (double increment : increments)
        for (double phase : {0.0, 0.3, beforeATie, 1.0})
            for (double startAmount : {0.7, 0.0}) {
                const double amount = startAmount == 0.0 ? 1.0 : startAmount; // glides or stands
                SCOPED_TRACE(testing::Message() << "increment " << increment << " from " << phase);
                LiteralRing ring{increment, phase, startAmount, amount};
                Stereo expected = signal;
                for (std::size_t n = 0; n < signal.side[0].size(); ++n) {
                    const float in[2] = {signal.side[0][n], signal.side[1][n]};
                    float out[2];
                    ring(in, out);
                    for (int side = 0; side < 2; ++side) expected.side[side][n] = out[side];
                }
                expected.phase = ring.phase;
                expectBits(expected, [&](const EffectBodies& bodies) {
                    Stereo got = signal;
                    RingBlock block{table.data(), phase, increment, startAmount, amount, {}, {}, 0};
                    runInBlocks(bodies.ring, block, got);
                    got.phase = block.phase;
                    return got;
                });
            }
}

} // namespace
} // namespace zephyra
