#include "effects/dsp_runtime.h"

#include "effects/delay_line.h"
#include "effects/effect_bodies.h"
#include "platform/large_pages.h"
#include "platform/text/log.h"
#include "tests/support/testing.h"

#include <sys/resource.h>

namespace zephyra {
namespace {

struct Entry : DataStoreEntry {
    ~Entry() { genlib_data_release(this); }
    std::vector<double> values() const { return {data, data + frames * channels}; }
};

TEST(DataStore, GrowingAndShrinkingKeepTheOverlapOfRows) {
    Entry entry;
    genlib_data_resize(&entry, 2, 3);
    EXPECT_THAT(entry.values(), Each(0));
    std::iota(entry.data, entry.data + 6, 1); // rows 1 2 3 and 4 5 6
    genlib_data_resize(&entry, 3, 2);         // the same byte size: nothing is kept
    EXPECT_THAT(entry.values(), ElementsAre(0, 0, 0, 0, 0, 0));
    std::iota(entry.data, entry.data + 6, 1); // rows 1 2, 3 4, 5 6
    genlib_data_resize(&entry, 4, 3);
    EXPECT_THAT(entry.values(), ElementsAre(1, 2, 0, 3, 4, 0, 5, 6, 0, 0, 0, 0));
    genlib_data_resize(&entry, 2, 1);
    EXPECT_THAT(entry.values(), ElementsAre(1, 3));
}

TEST(DataStore, KeepsRequestsWithinItsLimits) {
    Entry entry;
    testing::internal::CaptureStdout();
    genlib_data_resize(&entry, kDataStoreLimit, 3);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "warning: constraining [data] to < 256MB\n");
    EXPECT_EQ(std::tuple(entry.frames, entry.channels), std::tuple(kDataStoreLimit / 3, 3));
    genlib_data_resize(&entry, -5, 0);
    EXPECT_EQ(entry.values().size(), 1u);
}

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__) && !defined(__clang__)
TEST(DataStoreDeathTest, FallsBackTo512FramesOfOneChannelWhenMemoryIsShortWhichNoLineCanUse) {
    const auto inShortMemory = [] {
        std::vector<std::string> lines;
        Log log([&](std::string_view line) { lines.emplace_back(line); });
        const rlimit limit{64 << 20, 64 << 20};
        setrlimit(RLIMIT_AS, &limit);
        DataStoreEntry entry{.log = &log};
        genlib_data_resize(&entry, kDataStoreLimit / 2, 2);
        DelayLine line;
        setUpDelayLine(line, "line", kDataStoreLimit, &log);
        const char* const kShort = "allocating [data]: out of memory";
        const bool told =
            lines == std::vector<std::string>{kShort, kShort, "delay memory size error"};
        std::_Exit(told && entry.frames == 512 && entry.channels == 1 && !line.usable() ? 0 : 1);
    };
    EXPECT_EXIT(inShortMemory(), testing::ExitedWithCode(0), "");
}
#endif

TEST(DelayLine, HoldsThePowerOfTwoAtOrAboveTheRequestAndIsClearedBySettingUpAgain) {
    const std::int64_t sizes[][2] = {{-1, 2}, {2, 2}, {3, 4}, {4, 4}, {200000, 262144}};
    for (const auto& [requested, size] : sizes) {
        DelayLine line;
        setUpDelayLine(line, "line", requested, nullptr);
        EXPECT_TRUE(line.usable() && line.mask == size - 1) << requested;
        EXPECT_EQ(std::tuple(line.size, line.maxDelay), std::tuple(size, requested));
        const auto address = reinterpret_cast<std::uintptr_t>(line.memory);
        EXPECT_TRUE(size != kEchoLineSize || address % kLargePage == 0) << "a line of the echo";
        line.memory[size - 1] = 5;
        line.writeIndex = 1;
        setUpDelayLine(line, "line", requested, nullptr);
        EXPECT_TRUE(line.memory[size - 1] == 0 && line.writeIndex == 0) << requested;
        releaseDelayLine(line);
    }
}

} // namespace
} // namespace zephyra
