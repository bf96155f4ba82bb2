// What a host that records automation hears of hands on the controls.

#include "controls/control_events.h"
#include "hosting/gesture_listener.h"
#include "hosting/gesture_queue.h"
#include "tests/support/hosted_plugin.h"
#include "tests/support/test_sounds.h"

namespace zephyra {
namespace {

using enum ControlId;

struct Recorded : HostedPlugin {
    explicit Recorded(PluginKind kind = PluginKind::effect) : HostedPlugin(kind) {}
    void listen() {
        listener.emplace(system(), [this](const AUParameterAutomationEvent& event) {
            // Another thread gets in: MAIN is not held while a host is called.
            std::thread([this] { (void)main(); }).join();
            text << "=[]"[static_cast<int>(event.eventType)] << event.address << ' ' << event.value
                 << ' ';
        });
    }
    /// As a hand does it on a screen.
    void drag(ControlId id, float to) {
        const auto screen = main();
        auto& knob = dynamic_cast<MOK_KNOB&>(*system().view.control(id));
        knob.sendActionsForControlEvents(control_event::touchDown);
        knob.setValue(to);
        knob.sendEventValueChanged();
        knob.sendActionsForControlEvents(control_event::touchUpInside);
    }
    std::string heard() { return std::exchange(text, std::ostringstream()).str(); }

    std::ostringstream text;
    std::optional<GestureListener> listener;
};

TEST(PluginGestures, AreHeardOfHandsOutsideMainAndOfNothingElse) {
    Recorded plugin;
    plugin.listen();
    plugin.drag(width, 0.75f);
    EXPECT_EQ(plugin.heard(), "[4 0.25 =4 0.75 ]4 0.75 ");
    // The host's own values, an LFO, MIDI, a program and a state are no hand's.
    {
        const auto screen = plugin.main();
        auto& density = *plugin.system().view.control(ControlId::density);
        plugin.system().view.assignments.assign(density, AssignmentType::lfo);
        for (const ControlId learned : {freeze, length})
            plugin.system().view.midiManager.bind({.trigger = {.number = 7},
                                                   .control = plugin.system().view.control(learned),
                                                   .takeover = MidiTakeover::jump});
    }
    plugin.midi({0xB0, 7, 0});
    plugin.midi({0xB0, 7, 127});
    plugin.setParameter(static_cast<AUParameterAddress>(width), 0.5f);
    plugin.setProgram(3);
    EXPECT_TRUE(plugin.restore(plugin.state()).ok());
    plugin.midi({0x90, 67, 100});
    plugin.render(20);
    EXPECT_EQ(plugin.value(pitch), 7.0f);
    EXPECT_EQ(plugin.heard(), "");
}

TEST(PluginGestures, AreWholeOnesWhereEditsAreTakenBackComparedOrRandom) {
    Recorded plugin;
    auto& view = plugin.system().view;
    auto& stream = plugin.system().stream();
    const auto asMain = [&](const std::function<void()>& act) {
        const auto screen = plugin.main();
        act();
        plugin.system().instance.runLoop.runPosted();
    };
    const auto edit = [&](const std::function<void()>& act) {
        asMain([&] {
            view.edits.beginEdit("edit");
            act();
            view.edits.endEdit();
        });
        plugin.render(10);
        plugin.heard();
    };
    /// Each gesture without its values: a touch, a value, a release.
    const auto hears = [&](const char* expected, const std::function<void()>& act) {
        asMain(act);
        std::string shape;
        std::istringstream words(plugin.heard());
        for (std::string event, value; words >> event >> value;) shape += event;
        EXPECT_EQ(shape, expected);
    };
    const auto undo = [&] { view.edits.undo(); };
    asMain([&] {
        stream.setDisplayed(live, 0.0f);
        stream.setDisplayed(scanning, 0.0f);
        view.assignments.assign(*view.control(density), AssignmentType::lfo);
    });
    plugin.listen();
    edit([&] { plugin.drag(width, 0.75f), plugin.drag(density, 300.0f); });
    plugin.set(width, 0.5f); // automated meanwhile
    plugin.render(10);
    hears("[4=4[5=5]4]5", undo);
    EXPECT_EQ(plugin.value(width), 0.25f);
    hears("[4=4[5=5]4]5", [&] { view.edits.redo(); });
    edit([&] { stream.setDisplayed(freeze, 1.0f), stream.setDisplayed(live, 1.0f); });
    hears("[22=22[23=23]22]23", undo);
    const AUValue stood = plugin.value(scrubbingWave);
    edit([&] {
        stream.scrubArea.touchesBegan(1, {0.5, 0.5}, 0.0);
        plugin.render();
        stream.scrubArea.touchesEnded(1, 0.1);
    });
    hears("[0=0]0", undo);
    EXPECT_EQ(plugin.value(scrubbingWave), stood);
    // A hand that holds it goes on with its gesture; a scan that moves by itself makes none.
    edit([&] { plugin.drag(width, 0.5f); });
    asMain([&] {
        stream.loadSound(noiseSample(30000, 44100));
        stream.setDisplayed(scanning, 3.0f);
    });
    plugin.render(10);
    hears("[4=4=4]4", [&] {
        MOK_KNOB& knob = *view.knob(width);
        knob.sendActionsForControlEvents(control_event::touchDown);
        undo();
        knob.setValue(0.625f);
        knob.sendActionsForControlEvents(control_event::valueChanged |
                                         control_event::touchUpInside);
    });
    asMain([&] { stream.setDisplayed(scanning, 0.0f); });
    edit([&] { view.compare.choose(CompareSlots::Slot::b), plugin.drag(width, 0.5f); });
    hears("[4=4]4", [&] { view.compare.choose(CompareSlots::Slot::a); });
    for (const ControlRange& range : controlRanges()) view.locks.setLocked(range.id, true);
    asMain([&] { view.locks.setLocked(pitch, false), view.locks.setLocked(density, false); });
    hears("[5=5]5[9=9]9", [&] { view.randomizer.randomize(1); });
}

TEST(PluginGestures, EndForTheirListenerAloneAlsoWhereItGoesInACallOfItsOwn) {
    Recorded plugin;
    std::atomic<bool> calls = false, gone = false, late = false;
    std::optional<GestureListener> one(std::in_place, plugin.system(), [&](const auto&) {
        calls = true;
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        late = late || gone;
    });
    std::thread hand([&] { plugin.drag(width, 0.75f); });
    while (!calls) std::this_thread::yield();
    one.reset(); // waits for the call, and the rest of the gesture finds nobody
    gone = true;
    hand.join();
    EXPECT_FALSE(late);
    plugin.listen();
    {
        const auto screen = plugin.main(); // before anybody else drives MAIN
        EXPECT_TRUE(plugin.prepare({44100, 64}));
        plugin.drag(width, 0.25f);
    }
    EXPECT_EQ(plugin.heard(), "[4 0.75 =4 0.25 ]4 0.25 ");
    int heard = 0;
    one.emplace(plugin.system(), [&](const auto&) {
        ++heard;
        one.reset();
    });
    plugin.drag(width, 0.5f);
    EXPECT_EQ(heard, 1);
    EXPECT_EQ(plugin.heard(), "[4 0.25 =4 0.5 ]4 0.5 "); // the other one goes on
}

TEST(PluginGestures, WaitForTheirHostWithTheLastValueOfEachParameter) {
    using enum AUParameterAutomationEventType;
    GestureQueue queue;
    AUValue next = 0.0f;
    const auto add = [&](AUParameterAddress address, AUParameterAutomationEventType type) {
        queue.add({0, address, next++, type});
    };
    add(4, touch), add(4, value), add(5, touch), add(5, value), add(4, value), add(5, value);
    add(4, release), add(4, value);
    std::ostringstream taken;
    for (const auto& event : queue.take())
        taken << "=[]"[static_cast<int>(event.eventType)] << event.address << ' ' << event.value
              << ' ';
    EXPECT_EQ(taken.str(), "[4 0 =4 4 [5 2 =5 5 ]4 6 =4 7 ");
    EXPECT_TRUE(queue.take().empty());
}

} // namespace
} // namespace zephyra
