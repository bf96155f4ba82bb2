// Text that moves controls: a host's automation, from the lines of a file to what each block sends,
// and takes of the scan.

#include "rendering/events/automation_lane.h"
#include "rendering/events/take_file.h"
#include "tests/support/failing_calls.h"

namespace zephyra {
namespace {

TEST(Automation, LinesBecomePointsByTimeAndWrongOnesAreNamed) {
    const auto points = must(parseAutomation("time,parameter,value,kind\n# a comment\n\n"
                                             "4b, density, 40, ramp\r\n1.5,\"Echo Switch\",\"on\"\n"
                                             "\"0:02\",Pan,\"-0.5\",step",
                                             60.0, "moves"));
    ASSERT_EQ(points.size(), 3u);
    EXPECT_EQ(points[0].parameter, ControlId::echoSwitch);
    EXPECT_EQ(points[1].linear, -0.5f);
    EXPECT_EQ(points[2].seconds, 4.0); // four beats at 60
    EXPECT_TRUE(points[2].ramp);
    const ControlRange& density = controlRange(ControlId::density); // displayed on a curve
    EXPECT_EQ(points[2].linear, linearFromDisplayed(density, 40.0f));
    EXPECT_GT(points[2].linear, 100.0f);

    const std::pair<const char*, const char*> wrong[] = {
        {"1,Density", "moves, line 1: a line is time,parameter,value"},
        {"1,Pan,0\n-1,Pan,0", "moves, line 2: a time is seconds from 0 up"},
        {"1,Normalize,1", "there is no parameter \"Normalize\""}, // no host parameter
        {"1e308b,Pan,0", "\"1e308b\" is more than can be counted; write fewer beats"},
        {"1,Pan,2", "Pan takes -1 to 1, not \"2\""},
        {"1,Pan,0,slide", "a step or a ramp"},
        {"1,LIVE,on,ramp", "knows no ramp"}};
    for (const auto& [text, message] : wrong) {
        EXPECT_THAT(failureOf(parseAutomation(text, 120.0, "moves")), HasSubstr(message)) << text;
    }
}

TEST(Automation, PointsAreSentAtTheirFramesAndARampOnceABlockOrOftener) {
    constexpr ControlId kPan = ControlId::pan;
    AutomationLane lane(
        {{1.0, kPan, 0.5f, false}, {1.005, kPan, 0.75f, false}, {17.0, kPan, -0.25f, true}}, 0.0f);
    AutomationLane early({{0.5, kPan, 1.0f, true}}, 0.0f);
    EXPECT_TRUE(early.next(0, 20, 100.0).empty()); // still where the control stands
    EXPECT_EQ(early.next(20, 31, 100.0).size(), 2u);
    const std::tuple<std::uint64_t, std::uint32_t, std::vector<AutomationLane::Event>> blocks[] = {
        {0, 50, {}},
        {50, 50, {}},
        {100, 50, {{0.75f, 0}}},
        {150, 50, {{0.75f - 0.495f / 15.995f, 0}}},
        {200,
         1124,
         {{0.75f - 0.995f / 15.995f, 0},
          {0.75f - 6.115f / 15.995f, 512},
          {0.75f - 11.235f / 15.995f, 1024}}},
        {1324, 377, {{0.75f - 12.235f / 15.995f, 0}, {-0.25f, 376}}},
        {1701, 50, {}}};
    for (const auto& [first, frames, wanted] : blocks) {
        const auto sent = lane.next(first, frames, 100.0);
        ASSERT_EQ(sent.size(), wanted.size()) << first;
        for (std::size_t i = 0; i < sent.size(); ++i) {
            EXPECT_FLOAT_EQ(sent[i].value, wanted[i].value) << first;
            EXPECT_EQ(sent[i].offset, wanted[i].offset) << first;
        }
    }
}

TEST(TakeFile, ReadsWhatItWritesAndNamesTheLineThatIsWrong) {
    const std::vector<float> positions = {0.0f, 1.0f / 3, 0.1f, 1e-7f, 1.0f};
    EXPECT_EQ(must(parseTake(takeText(positions), "take")), positions);
    std::string most = "\xEF\xBB\xBFPosition\r\n\n# by hand\n";
    for (int i = 0; i < 1800; ++i) most += "0.5\r\n";
    EXPECT_EQ(parseTake(most, "take").value().size(), 1800u);
    const std::pair<std::string, const char*> wrong[] = {
        {most + "0.5", "take, line 1804: a take has at most 1800"},
        {"0\nposition\n1", "take, line 2: a position is"},
        {"0\n1.01", "take, line 2: a position is"},
        {"0\n#\nnan", "take, line 3: a position is"},
        {"0.5", "at least 2 positions, one a line, 15 a second; this one has 1"}};
    for (const auto& [text, message] : wrong)
        EXPECT_THAT(failureOf(parseTake(text, "take")), HasSubstr(message));
    const auto write = [&](const fs::path& path) {
        TakeFile file;
        return file.open(path) && file.save(positions);
    };
    expectWholeOrNotAtAll(write, "old");
}

} // namespace
} // namespace zephyra
