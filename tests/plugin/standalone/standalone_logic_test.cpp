// What the standalone program decides: when a device counts as lost, what is said of LIVE, which
// session is whose, when notes act.

#include "plugin/standalone/device_watch.h"
#include "plugin/standalone/live_notice.h"
#include "plugin/standalone/midi_queue.h"
#include "plugin/standalone/output_limit.h"
#include "plugin/standalone/session_file.h"
#include "tests/support/testing.h"

namespace zephyra {
namespace {

using Step = DeviceWatch::Step;

TEST(OutputLimit, LeavesRoomAboveFullScaleAndKeepsALoopFromGrowing) {
    std::array<float, 4> frames = {1.5f, -3e6f, 4.1f, -0.25f};
    limitOutput(frames.data(), 4);
    EXPECT_THAT(frames, ElementsAre(1.5f, -4.0f, 4.0f, -0.25f));
}

TEST(DeviceWatch, ClosesWhatFailsOrIsSilentAndTriesAgainAfterAWhile) {
    const struct {
        double time;
        DeviceWatch::Signs signs;
        Step step;
    } kCases[] = {
        {0.0, {}, Step::open}, // takes 0.1 s
        {1.0, {}, Step::nothing},
        {3.2, {}, Step::open}, // takes 2 s
        {8.0, {}, Step::nothing},
        {15.3, {.isOpen = true, .blocks = 7}, Step::nothing},
        {20.0, {.isOpen = true, .blocks = 8}, Step::nothing},
        {24.9, {.isOpen = true, .blocks = 8}, Step::nothing},
        {25.1, {.isOpen = true, .blocks = 8}, Step::close},
        {28.0, {}, Step::nothing},
        {28.2, {}, Step::open},
        {40.0, {.isOpen = true, .mayPause = true}, Step::nothing},
        {99.0, {.isOpen = true, .mayPause = true}, Step::nothing},
        {99.1, {.isOpen = true, .hasFailed = true, .mayPause = true}, Step::close},
    };
    DeviceWatch watch;
    for (const auto& row : kCases) {
        EXPECT_EQ(watch.look(row.time, row.signs), row.step) << row.time;
        if (row.step == Step::open) watch.opened(row.time, row.time + (row.time < 3 ? 0.1 : 2.0));
    }
}

TEST(LiveNotice, TellsOfFeedbackAndAsksOnce) {
    EXPECT_EQ(liveNotice({.hasDevice = true, .hasInput = true}).line, "");
    EXPECT_THAT(liveNotice({.isLive = true, .hasDevice = true}).line, HasSubstr("hears nothing"));
    LiveSigns signs{.isLive = true, .hasDevice = true, .hasInput = true};
    EXPECT_THAT(liveNotice(signs).line, HasSubstr("feeds back"));
    EXPECT_TRUE(liveNotice(signs).asks);
    signs.wasTold = true;
    EXPECT_FALSE(liveNotice(signs).asks);
}

TEST(SessionFile, GoesOnWithTheFirstThatNobodyElseHas) {
    const TemporaryFolder folder;
    const fs::path state = folder / "a/b";
    SessionFile first, second;
    ASSERT_TRUE(first.open(state) && second.open(state));
    EXPECT_TRUE(first.save("one") && second.save("two"));
    EXPECT_EQ(must(first.read())->size(), 3u);
    EXPECT_NE(first.path(), second.path());
    fs::remove(first.path());
    EXPECT_TRUE(first.save("one") && first.save("")); // nothing new, nothing to keep
    EXPECT_FALSE(must(first.read()));
    EXPECT_TRUE(first.save("three"));
    EXPECT_TRUE(first.setAside("previous"));
    EXPECT_FALSE(must(first.read()));
    EXPECT_TRUE(fs::exists(state / "session-1.previous.plist"));
    fs::create_directory(first.path());
    EXPECT_THAT(failureOf(first.save("four")), HasSubstr("session-1.plist"));
    EXPECT_TRUE(second.save("kept"));
    const fs::path file = second.path();
    fs::create_directory(state / "session-2.previous.plist");
    EXPECT_THAT(failureOf(second.setAside("previous")), HasSubstr("no session is saved"));
    EXPECT_TRUE(second.save("over it"));
    EXPECT_EQ(readText(file), "kept");
    EXPECT_THAT(failureOf(SessionFile().open({})), HasSubstr("HOME"));
}

TEST(MidiQueue, NotesKeepTheirDistanceABlockLater) {
    MidiQueue queue;
    std::vector<std::uint32_t> frames;
    const auto take = [&](double seconds) {
        frames.clear();
        queue.take(seconds, 1000.0, 100,
                   [&](const std::uint8_t*, std::size_t length, std::uint32_t frame) {
                       EXPECT_EQ(length, 3u);
                       frames.push_back(frame);
                   });
    };
    const std::uint8_t note[] = {0x90, 60, 100}, sysex[] = {0xf0, 1, 2, 3, 0xf7};
    take(10.0);
    for (const double seconds : {9.0, 10.0205, 10.0505, 10.5}) queue.push(note, seconds);
    queue.push(sysex, 10.01);
    take(10.1);
    EXPECT_THAT(frames, ElementsAre(0, 20, 50, 99));
    take(10.2);
    EXPECT_THAT(frames, ElementsAre());
}

} // namespace
} // namespace zephyra
