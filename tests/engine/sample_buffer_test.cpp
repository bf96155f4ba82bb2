// Sizes, guard points and the operations of sample buffers.

#include "engine/sample_buffer.h"

#include "tests/support/testing.h"

namespace zephyra {
namespace {

void fill(mokBuffer& buffer) {
    for (std::uint64_t n = 0; n < buffer.size; ++n) buffer.data[n] = static_cast<float>(n) + 1.0f;
}

void expectGuard(const mokBuffer& buffer) {
    for (std::uint64_t k = 0; k < 3; ++k)
        EXPECT_EQ(buffer.data[buffer.size + k], buffer.data[k % buffer.size]) << k;
}

TEST(Buffer, KeepsItsGuardAndItsSizesThroughEveryOperation) {
    // Asked for, its size, and what it counts without the last three frames.
    const std::uint64_t cases[][3] = {{0, 10, 7}, {1, 1, 0}, {2, 2, 0},
                                      {3, 3, 0},  {4, 4, 1}, {100, 100, 97}};
    for (const auto& [asked, size, counted] : cases) {
        mokBuffer buffer(asked);
        EXPECT_EQ(std::tuple(buffer.size, buffer.getSize()), std::tuple(size, counted));
        EXPECT_FLOAT_EQ(buffer.guardRatio, 1.0f + 3.0f / static_cast<float>(size));
        fill(buffer);
        buffer.writeGuardPoint();
        expectGuard(buffer);
        for (const float gain : {NAN, INFINITY, -0.5f})
            buffer.rescale(gain); // only the last is taken
        EXPECT_EQ(buffer.data[size - 1], -0.5f * static_cast<float>(size));
        expectGuard(buffer);
        buffer.data[size + 2] = 999.0f;
        EXPECT_EQ(buffer.getPeak(), 0.5f * static_cast<float>(size)) << "without the guard";
        buffer.clear();
        EXPECT_EQ(buffer.getPeak(), 0.0f);
        expectGuard(buffer);
    }
}

TEST(Sample, HoldsSixteenFramesAtLeast) {
    const std::uint64_t cases[][2] = {{0, 16}, {15, 16}, {16, 16}, {17, 17}};
    for (const auto& [asked, held] : cases) EXPECT_EQ(mokSample(asked, 44100.0f).size, held);
    EXPECT_EQ(mokSample().sampleRate, 0.0f);
}

TEST(Sample, AllocatedAnewForgetsEverythingUnlessMemoryIsShort) {
    mokSample sample(20, 44100.0f);
    fill(sample);
    testing::internal::CaptureStderr();
    EXPECT_FALSE(sample.allocate(UINT64_MAX, 48000.0f));
    const std::string line = testing::internal::GetCapturedStderr();
    EXPECT_EQ(line.rfind("bad_alloc caught: ", 0), 0u) << line;
    EXPECT_EQ(line.find('\n'), line.size() - 1) << line;
    EXPECT_TRUE(sample.ready && sample.data[19] == 20.0f);
    EXPECT_EQ(std::tuple(sample.size, sample.sampleRate), std::tuple(20u, 44100.0f));

    sample.offset = 7;
    sample.ready = false;
    ASSERT_TRUE(sample.allocate(50, 48000.0f));
    EXPECT_TRUE(sample.ready && sample.bitsPerSample == 16 && sample.offset == 0);
    EXPECT_EQ(std::tuple(sample.size, sample.sampleRate), std::tuple(50u, 48000.0f));
    EXPECT_FLOAT_EQ(sample.guardRatio, 1.06f);
    for (std::uint64_t n = 0; n < 53; ++n) EXPECT_EQ(sample.data[n], 0.0f) << n;
}

TEST(Scale, GoesFromLowToHighByTheMagnitude) {
    EXPECT_EQ(scale1(-0.25f, 2.0f, 4.0f), 2.5f);
    EXPECT_EQ(scale1(1.0f, 4.0f, -4.0f), -4.0f);
}

} // namespace
} // namespace zephyra
