// What drives which control: assigning, the panel, the table, and presets old and hostile.

#include "modulation/midi_manager.h"
#include "modulation/scrub_widgets.h"
#include "tests/support/testing.h"

namespace zephyra {
namespace {

struct Source final : ControlManagerDataSource {
    explicit Source(RunLoop& loop) : first(loop), second(loop) { b.setRange(-10.0f, 30.0f); }

    std::vector<Control*> getWidgetsObjForControlManager() override {
        return {&a, &b, &c, &pads[0], &pads[1], &on};
    }
    std::vector<std::string> getWidgetsObjNamesForControlManager() override {
        return {"Density", "Éclat", "Length", "Pad 1", "Pad 2", "Echo On"};
    }
    std::vector<int> getWidgetsObjColorsForControlManager() override { return {0, 1, 2, 3, 4, 5}; }
    std::vector<ScrubReference*> getScrubReference() override { return {&first, &second}; }

    MOK_KNOB a{"_a"}, b{"_b"}, c{"_c"};
    Control pads[2];
    Toggle on{"_on"};
    ScrubWidgets first, second;
};

struct ControlManagerTest : testing::Test {
    ControlManagerTest() { manager.initialize(); }

    AssignmentType driver(Control& control) { // by what the sources themselves say
        const bool scrubbed = source.second.getWrapperID(&control) != nullptr;
        EXPECT_EQ(scrubbed, source.first.getWrapperID(&control) != nullptr);
        const bool lfo = manager.getLfoWidgetsMapping()->getWrapperID(&control) != nullptr;
        EXPECT_FALSE(lfo && scrubbed);
        if (lfo) return AssignmentType::lfo;
        if (!scrubbed) return AssignmentType::none;
        const bool second = source.second.followsSecondFinger(&control);
        return second ? AssignmentType::secondFinger : AssignmentType::scrubY;
    }

    Instance instance;
    Source source{instance.runLoop};
    ControlManager manager{instance, source, ControlManager::Idiom::tablet};
};

TEST_F(ControlManagerTest, AControlHasOneSourceWhateverItHadBefore) {
    const struct {
        AssignmentType type, driver;
        const char *text, *icon, *information;
    } cases[] = {{AssignmentType::none, AssignmentType::none, "Unassigned", "", ""},
                 {AssignmentType::midi, AssignmentType::none, "Unassigned", "midi.png", ""},
                 {AssignmentType::scrubY, AssignmentType::scrubY, "Scrub Y Assigned", "scrub_Y.png",
                  "Scrub Y Assigned for 'Éclat'"},
                 {AssignmentType::secondFinger, AssignmentType::secondFinger,
                  "Second Finger Scrub Assigned", "second_finger.png",
                  "Second Finger Scrub Assigned for 'Éclat'"},
                 {AssignmentType::lfo, AssignmentType::lfo, "LFO Assigned", "lfo.png",
                  "LFO Assigned for 'Éclat'"}};
    std::vector<AssignmentType> told;
    manager.setObserver([&](Control&, AssignmentType before, AssignmentType after) {
        told.insert(told.end(), {before, after});
    });
    ASSERT_TRUE(manager.selectRow(1));
    for (const auto& before : cases)
        for (const auto& after : cases) {
            manager.performMapping(static_cast<std::int64_t>(before.type));
            manager.setMinMax(0.5f, 0.75f);
            manager.performMapping(static_cast<std::int64_t>(after.type));
            EXPECT_EQ(driver(source.b), after.driver);
            EXPECT_EQ(manager.row(1).text, after.text);
            EXPECT_EQ(manager.row(1).icon, after.icon);
            EXPECT_EQ(manager.panel.information, after.information);
            EXPECT_EQ(manager.panel.realRange, "Widget Range min = -10.000 max = 30.000");
            EXPECT_EQ(told.at(told.size() - 2), before.type);
            EXPECT_EQ(told.back(), after.type);
        }
    manager.performMapping(7);
    EXPECT_EQ(manager.typeOf(source.b), AssignmentType::lfo);
}

TEST_F(ControlManagerTest, AHostileStateChangesOnlyWhatItNamesProperly) {
    manager.assign(source.a, AssignmentType::scrubY);
    PropertyArray hostile{"no",
                          PropertyDictionary{},
                          PropertyDictionary{{"name", 3}, {"type", 6}},
                          PropertyDictionary{{"name", "_a"}, {"type", 6.0}},
                          PropertyDictionary{{"name", "_b"}, {"type", 6}, {"text", 1}},
                          PropertyDictionary{{"name", "_c"}, {"type", 6}, {"WrapperState", "?"}}};
    for (const std::int64_t type : {2, 99}) // of a control's own the last holds
        for (int i = 0; i < 50000; ++i)
            hostile.push_back(
                PropertyDictionary{{"name", i % 2 ? "_b" : "?"}, {"type", type}, {"x", 2}});
    hostile.push_back(PropertyDictionary{{"name", "_b"}, {"type", "?"}});
    const StateFindings findings = manager.restoreState(hostile);
    EXPECT_LT(findings.size(), 7u);
    EXPECT_EQ(findings.at(2).text, "50000 assignment(s) stand there twice; the last of each holds");
    EXPECT_EQ(driver(source.a), AssignmentType::scrubY);
    EXPECT_EQ(driver(source.b), AssignmentType::none);
    EXPECT_EQ(driver(source.c), AssignmentType::lfo);
    EXPECT_EQ(manager.row(1).text + manager.row(1).icon, "Unassigned");
    const PropertyArray state = manager.getState();
    EXPECT_EQ(state.size(), 6u);
    EXPECT_EQ(state[1],
              (PropertyDictionary{{"name", "_b"}, {"type", 99}, {"text", "Unassigned"}, {"x", 2}}));
}

TEST_F(ControlManagerTest, SearchesNamesWhateverTheCaseAndSelectsWhatItFound) {
    for (const char* text : {"éCLA", "e\u0301CL", "_B"}) { // an accent of its own, too
        manager.searchBar_textDidChange(text);
        ASSERT_EQ(manager.numberOfRows(), 1u) << text;
        EXPECT_EQ(manager.row(0).color, 1);
    }
    EXPECT_TRUE(manager.selectRow(0));
    EXPECT_EQ(manager.panel.control, &source.b);
    EXPECT_FALSE(manager.selectRow(1));
    manager.searchBar_textDidChange("");
    EXPECT_FALSE(manager.isFiltered);
    EXPECT_EQ(manager.numberOfRows(), 6u);
}

TEST_F(ControlManagerTest, AsksBeforeItRemovesEverything) {
    manager.assign(source.a, AssignmentType::lfo);
    manager.assign(source.b, AssignmentType::scrubY);
    for (const auto& [answer, question] : {std::pair("NO", "Do you want remove all connections?"),
                                           {"YES", "Do you want remove all connections?"},
                                           {"OK", "No one connections has been found!"}}) {
        EXPECT_EQ(driver(source.a) == AssignmentType::lfo, *answer != 'O');
        EXPECT_EQ(driver(source.b) == AssignmentType::scrubY, *answer != 'O');
        manager.clearAssignements();
        instance.runLoop.runPosted();
        EXPECT_EQ(instance.alerts.current()->message, question);
        instance.alerts.answer(answer);
    }
}

TEST_F(ControlManagerTest, OpensTheMidiManagerUntilATabletIsTurned) {
    ControlManager* asked = nullptr;
    instance.notifications.addObserver("showMidiManager", [&](const std::any& object) {
        asked = std::any_cast<ControlManager*>(object);
    });
    manager.showMidiManager();
    EXPECT_EQ(asked, &manager);
    MidiManager midi(instance, manager);
    manager.showMidiManager();
    EXPECT_TRUE(midi.isShown() && midi.learn(source.a));
    instance.notifications.post("DeviceOrientationDidChange");
    EXPECT_FALSE(midi.isShown() || midi.learning());
}

} // namespace
} // namespace zephyra
