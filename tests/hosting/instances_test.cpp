// Instances beside each other on threads of their own: each plays and reports as if it were alone.

#include "engine/envelope_menu.h"
#include "tests/support/hosted_unit.h"

namespace zephyra {
namespace {

struct Played {
    std::vector<float> heard;
    std::vector<std::string> lines; // sorted: a worker's may come before or after MAIN's
    bool operator==(const Played&) const = default;
};

/// A state with as many strange records as number says, and a sample of that name that is nowhere.
PropertyDictionary wrongState(HostedUnit& hosted, std::uint32_t number) {
    PropertyDictionary state = hosted.view.getState();
    auto* const records = state.at("ControlAssignments").as<PropertyArray>();
    for (std::uint32_t i = 0; i < number; ++i)
        records->emplace_back(PropertyDictionary{{"name", "nobody"}, {"type", 0}});
    state["Sample_0"] =
        PropertyDictionary{{"Path", "/nonexistent/" + std::to_string(number) + ".wav"}};
    return state;
}

/// A second of an instance that draws, restores and complains.
Played play(std::uint32_t number) {
    HostedUnit hosted(component_type::instrument);
    hosted.instance.random.seed(number);
    StreamControls& controls = hosted.stream.controls;
    for (MOK_KNOB* const knob :
         std::initializer_list<MOK_KNOB*>{&controls._pan, &controls._density}) {
        hosted.view.assignments.assign(*knob, AssignmentType::lfo);
        LfoWidgetWrapper& lfo = *hosted.view.assignments.getLfoWidgetsMapping()->getWrapperID(knob);
        lfo.setLfoShapeFromWrapper(kLfoRandom);
        lfo.setHz(kHighestLfoRate);
    }
    hosted.stream.pickEnvelope(findEnvelope("Random").value());
    hosted.view.restoreState(wrongState(hosted, number));
    hosted.instance.runLoop.finishWork();
    hosted.ready().queue(ControlId::playStop, 1);
    hosted.render(44100);
    std::sort(hosted.lines.begin(), hosted.lines.end());
    return {hosted.heard, hosted.lines};
}

TEST(Instances, PlayAndReportBesideEachOtherAsTheyDoAlone) {
    std::array<Played, 4> alone, together;
    for (std::uint32_t n = 0; n < alone.size(); ++n) alone[n] = play(n + 1);
    EXPECT_NE(alone[0].heard, alone[1].heard); // what they draw is heard
    for (std::size_t n = 0; n < alone.size(); ++n) {
        const std::string number = std::to_string(n + 1);
        for (const std::string& line :
             {"Warning, no file exist at path: /nonexistent/" + number + ".wav!",
              number + " assignment(s) left out: no such control is here"})
            EXPECT_EQ(std::ranges::count(alone[n].lines, line), 1) << line;
    }

    std::vector<std::thread> threads;
    for (std::uint32_t n = 0; n < together.size(); ++n)
        threads.emplace_back([&together, n] { together[n] = play(n + 1); });
    for (std::thread& thread : threads) thread.join();
    for (std::size_t n = 0; n < alone.size(); ++n) {
        EXPECT_EQ(together[n].lines, alone[n].lines);
        EXPECT_TRUE(together[n].heard == alone[n].heard) << n;
    }
}

} // namespace
} // namespace zephyra
