// Sizes, guard points and the operations of sample buffers.

#include "engine/sample_buffer.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

namespace zephyra {
namespace {

void fill(mokBuffer& buffer) {
    for (std::uint64_t n = 0; n < buffer.size; ++n) buffer.data[n] = static_cast<float>(n) + 1.0f;
}

void expectGuard(const mokBuffer& buffer) {
    for (std::uint64_t k = 0; k < 3; ++k)
        EXPECT_EQ(buffer.data[buffer.size + k], buffer.data[k % buffer.size]) << k;
}

TEST(Buffer, HasTenFramesWhenNoneWereAskedFor) {
    const mokBuffer buffer(0);
    EXPECT_EQ(buffer.size, 10u);
    EXPECT_EQ(buffer.getSize(), 7u);
    EXPECT_FLOAT_EQ(buffer.guardRatio, 1.3f);
    EXPECT_EQ(mokSample().sampleRate, 0.0f);
}

TEST(Buffer, KeepsItsGuardThroughEveryOperation) {
    for (const unsigned long size : {1ul, 2ul, 3ul, 4ul, 100ul}) {
        mokBuffer buffer(size);
        fill(buffer);
        buffer.writeGuardPoint();
        expectGuard(buffer);
        buffer.rescale(-0.5f);
        EXPECT_EQ(buffer.data[size - 1], -0.5f * static_cast<float>(size));
        expectGuard(buffer);
        buffer.clear();
        EXPECT_EQ(buffer.getPeak(), 0.0f);
        expectGuard(buffer);
    }
}

TEST(Buffer, CountsItsSizeWithoutTheLastThreeFrames) {
    const std::uint64_t expected[] = {0, 0, 0, 1, 2};
    for (unsigned long size = 1; size <= 5; ++size)
        EXPECT_EQ(mokBuffer(size).getSize(), expected[size - 1]) << size;
}

TEST(Buffer, PeaksAtItsLargestMagnitudeWithoutTheGuard) {
    mokBuffer buffer(4);
    buffer.data[2] = -0.75f;
    buffer.data[1] = 0.5f;
    buffer.data[5] = 9.0f; // a guard point
    EXPECT_EQ(buffer.getPeak(), 0.75f);
}

TEST(Buffer, IgnoresAGainThatIsNotFinite) {
    mokBuffer buffer(4);
    fill(buffer);
    for (const float gain : {std::nanf(""), std::numeric_limits<float>::infinity()})
        buffer.rescale(gain);
    EXPECT_EQ(buffer.data[3], 4.0f);
}

TEST(Sample, HoldsSixteenFramesAtLeast) {
    const struct {
        std::uint64_t asked, held;
    } cases[] = {{0, 16}, {1, 16}, {15, 16}, {16, 16}, {17, 17}, {44100, 44100}};
    for (const auto& c : cases) EXPECT_EQ(mokSample(c.asked, 44100.0f).size, c.held) << c.asked;
}

TEST(Sample, ForgetsEverythingWhenAllocatedAnew) {
    mokSample sample(100, 44100.0f);
    fill(sample);
    sample.offset = 7;
    sample.ready = false;
    ASSERT_TRUE(sample.allocate(50, 48000.0f));
    EXPECT_EQ(sample.size, 50u);
    EXPECT_EQ(sample.sampleRate, 48000.0f);
    EXPECT_EQ(sample.bitsPerSample, 16);
    EXPECT_EQ(sample.offset, 0u);
    EXPECT_TRUE(sample.ready);
    EXPECT_FLOAT_EQ(sample.guardRatio, 1.06f);
    for (std::uint64_t n = 0; n < 53; ++n) EXPECT_EQ(sample.data[n], 0.0f) << n;
}

TEST(Sample, KeepsItsContentsWhenMemoryIsShort) {
    mokSample sample(20, 44100.0f);
    fill(sample);
    testing::internal::CaptureStderr();
    EXPECT_FALSE(sample.allocate(std::numeric_limits<std::uint64_t>::max(), 48000.0f));
    const std::string line = testing::internal::GetCapturedStderr();
    EXPECT_EQ(line.rfind("bad_alloc caught: ", 0), 0u) << line;
    EXPECT_EQ(line.find('\n'), line.size() - 1) << line;
    EXPECT_TRUE(sample.ready);
    EXPECT_EQ(sample.size, 20u);
    EXPECT_EQ(sample.sampleRate, 44100.0f);
    EXPECT_EQ(sample.data[19], 20.0f);
}

TEST(Scale, GoesFromLowToHighByTheMagnitude) {
    EXPECT_EQ(scale1(0.25f, 2.0f, 4.0f), 2.5f);
    EXPECT_EQ(scale1(-0.25f, 2.0f, 4.0f), 2.5f);
    EXPECT_EQ(scale1(1.0f, 4.0f, -4.0f), -4.0f);
}

} // namespace
} // namespace zephyra
