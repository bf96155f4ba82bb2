// Hands on the path's knobs: what moves, what of it reaches the engine, and what hosts hear.
#include "controls/knob.h"
#include "hosting/gesture_listener.h"
#include "screens/model/path/knob_hand.h"
#include "screens/model/path/knob_menu.h"
#include "screens/model/top/edit_line.h"
#include "tests/support/hosted_plugin.h"
#include "tests/support/stream_probe.h"

#include <gtest/gtest.h>

namespace zephyra {
namespace {

using enum ControlId;
constexpr Point kCentre{50.0, 50.0};

struct Hands : testing::Test {
    Hands() {
        context.beginEdit = [this](const std::string& name) {
            edits += "(" + name;
            source.asMain([&](AudioUnitViewController& view) { view.edits.beginEdit(name); });
        };
        context.endEdit = [this] {
            edits += ")";
            source.asMain([&](AudioUnitViewController& view) { view.edits.endEdit(); });
        };
    }
    MOK_KNOB& knob(ControlId id) {
        return dynamic_cast<MOK_KNOB&>(*plugin.system().view.control(id));
    }
    float displayed(ControlId id) { return knob(id).displayedValue(); }
    void chooseStyle(int style) {
        source.asMain([&](AudioUnitViewController&) {
            plugin.system().instance.notifications.post(MOK_KNOB::kInteractionStyleNotice, style);
        });
    }
    mokGranulatorSF& engine() { return plugin.system().stream().engine(); }
    std::string heard() { return std::exchange(gestures, {}); }
    void choose(const std::string& text, ControlId id) {
        for (const MenuRow& row : knobMenu(context, hand, id, calls))
            if (row.text.starts_with(text) && row.isEnabled) return row.chosen();
        ADD_FAILURE() << "no row " << text;
    }

    HostedPlugin plugin{PluginKind::effect};
    ScreenSource source{plugin};
    ScreenContext context{.source = source};
    std::string edits, gestures, clipboard;
    GestureListener hears{plugin.system(), [this](const AUParameterAutomationEvent& event) {
                              gestures += "=[]"[static_cast<int>(event.eventType)];
                              gestures += std::to_string(event.address);
                          }};
    KnobMenuCalls calls{[this](const std::string& text) { clipboard = text; },
                        [this] { return clipboard; },
                        {},
                        {}};
    KnobHand hand{context};
};

TEST_F(Hands, DragInEveryStyle) {
    struct Drag {
        int style;
        Point from, to;
        float share; // of the turn that the pitch moves, from its middle
    };
    for (const Drag& drag :
         {Drag{kVertical, {0, 0}, {0, -27}, 0.1f}, Drag{kHorizontal, {0, 0}, {54, 9}, 0.2f},
          Drag{kDiagonal, {0, 0}, {-27, 27}, -0.2f},
          Drag{kRotary, {50, 20}, {80, 50}, 90.0f / 270}}) {
        SCOPED_TRACE(drag.style);
        chooseStyle(drag.style);
        hand.reset(pitch);
        const float rate = StreamProbe::fields(engine()).playbackRate;
        heard(), edits.clear();
        ASSERT_TRUE(hand.begin(1, pitch, drag.from, kCentre));
        hand.move(1, drag.to, Fineness::coarse);
        EXPECT_NEAR(displayed(pitch), 48 * drag.share, 0.01f);
        EXPECT_NEAR(StreamProbe::fields(engine()).playbackRate / rate,
                    std::exp2(48 * drag.share / 12), 0.01);
        hand.end(1);
        EXPECT_EQ(heard(), "[9=9]9");
        EXPECT_EQ(edits, "(Pitch)");
    }
}

TEST_F(Hands, DragATenthAsFarWithShiftAndGoOnFromThere) {
    for (const int style : {kVertical, kRotary}) {
        SCOPED_TRACE(style);
        chooseStyle(style);
        hand.reset(pitch);
        hand.begin(1, pitch, {50, 20}, kCentre);
        hand.move(1, style == kRotary ? Point{80, 50} : Point{50, -70}, Fineness::fine);
        EXPECT_NEAR(displayed(pitch), 48 * 0.1 * 90 / 270, 0.02);
        hand.move(1, style == kRotary ? Point{50, 80} : Point{50, -160}, Fineness::coarse);
        EXPECT_NEAR(displayed(pitch), 48 * 1.1 * 90 / 270, 0.02);
        hand.end(1);
    }
}

TEST_F(Hands, HoldSeveralKnobsAtOnceButEachOnlyOnce) {
    chooseStyle(kVertical);
    EXPECT_TRUE(hand.begin(1, width, {0, 0}, kCentre));
    EXPECT_FALSE(hand.begin(2, width, {0, 0}, kCentre));
    EXPECT_TRUE(hand.begin(2, leftDelay, {0, 0}, kCentre));
    EXPECT_FALSE(hand.begin(2, pan, {0, 0}, kCentre));
    ScreenContext window{.source = source}; // another one
    KnobHand another(window);
    EXPECT_FALSE(another.begin(1, width, {0, 0}, kCentre));
    hand.move(1, {0, -27}, Fineness::coarse);
    hand.move(2, {0, 1000}, Fineness::coarse);
    EXPECT_FLOAT_EQ(displayed(width), 0.35f);
    EXPECT_FLOAT_EQ(engine().echoTimeL, 1.0f);
    EXPECT_FALSE(knob(pan).isTracking());
    hand.cancel(2);
    hand.end(1);
    EXPECT_EQ(heard(), "[4[14=4=14]14]4");
    EXPECT_EQ(edits, "(Width(Left Delay))");
}

TEST_F(Hands, StepWithWheelAndKeysAsOneGesture) {
    hand.turn(pitch, 3, Fineness::coarse, 1.0);
    hand.turn(pitch, -1, Fineness::fine, 1.2);
    hand.frame(1.5);
    EXPECT_FLOAT_EQ(displayed(pitch), 2.9f);
    EXPECT_EQ(heard(), "[9=9=9");
    hand.frame(1.7);
    EXPECT_EQ(heard(), "]9");
    EXPECT_EQ(edits, "(Pitch)");
    // An undo does not wait for more of them, and leaves a drag alone.
    { const KnobHand sheets(context); } // came and went
    plugin.render(110);                 // more than a second
    hand.turn(pitch, 1, Fineness::coarse, 1.8);
    undo(context);
    EXPECT_FLOAT_EQ(displayed(pitch), 2.9f);
    hand.begin(1, pitch, {0, 0}, kCentre);
    undo(context);
    EXPECT_FLOAT_EQ(displayed(pitch), 2.9f);
    hand.end(1);
    undo(context);
    EXPECT_EQ(displayed(pitch), 0.0f);
    redo(context);
    edits = "(Pitch)";

    hand.turn(measures, 0.6, Fineness::coarse, 2.0);
    EXPECT_EQ(displayed(measures), 1.0f);
    hand.turn(measures, 0.6, Fineness::fine, 2.1); // half steps add up, fine ones are none
    EXPECT_EQ(displayed(measures), 2.0f);
    hand.turnToEnd(length, true, 2.2);
    EXPECT_EQ(edits, "(Pitch)(measures)(Length");
    EXPECT_EQ(displayed(length), 2000.0f);
    EXPECT_EQ(StreamProbe::fields(engine()).grainLength, 2.0f);
    // Below an LFO, from where a hand had it.
    hand.assign(width, AssignmentType::lfo);
    plugin.render(110);
    hand.turn(width, 1, Fineness::coarse, 2.3);
    EXPECT_FLOAT_EQ(plugin.system().view.baseValue(knob(width)), 0.25f + 0.02f);
    EditLine(context).press(EditButton::randomize); // is an edit of its own
    EXPECT_EQ(plugin.system().view.edits.undoName(), "Randomise");
}

TEST_F(Hands, LeaveNothingUnderWayBehindThem) {
    for (const bool steps : {false, true}) {
        heard(), edits.clear();
        {
            KnobHand gone(context);
            if (steps) gone.turn(width, 1, Fineness::coarse, 0.0);
            EXPECT_TRUE(steps || gone.begin(5, width, {0, 0}, kCentre));
        }
        EXPECT_FALSE(knob(width).isTracking());
        EXPECT_EQ(edits, "(Width)");
        EXPECT_TRUE(heard().ends_with(']' + std::to_string(static_cast<int>(width))));
    }
    EXPECT_EQ(context.hands, std::vector{&hand});
    edits.clear();
    hand.turn(width, 1, Fineness::coarse, 0.0);
    hand.begin(1, pitch, {0, 0}, kCentre); // ends the steps of another
    EXPECT_EQ(edits, "(Width)(Pitch");
    const float before = displayed(pitch);
    hand.turn(pitch, 1, Fineness::coarse, 0.1); // which is held
    EXPECT_EQ(displayed(pitch), before);
    hand.end(1);
    const float first = displayed(quarters);
    for (const float moved : {0.0f, 1.0f, 2.0f, 3.0f}) { // a smooth wheel
        hand.turn(quarters, 0.75, Fineness::coarse, 1.0);
        EXPECT_EQ(displayed(quarters), first + moved);
    }
    const auto learns = [&] { return plugin.system().view.midiManager.learning() != nullptr; };
    hand.learnMidi(width);
    EXPECT_TRUE(learns());
    hand.learnMidi(width);
    EXPECT_FALSE(learns());
    hand.learnMidi(width);
    hand.assign(width, AssignmentType::none);
    EXPECT_FALSE(learns());
    hand.lock(width, true);
    for (const MenuRow& row : knobMenu(context, hand, width, calls))
        EXPECT_TRUE(row.text != "Randomise" || !row.isEnabled);
}

TEST_F(Hands, TypeValuesInAnyUnit) {
    struct Typed {
        ControlId id;
        const char* text;
        float displayed; // negative: refused, the value stays
    };
    for (const auto& [id, text, expected] :
         {Typed{density, "0.2 kHz", 200}, Typed{length, "1.5 s", 1500},
          Typed{leftDelay, "330 ms", 0.33f},
          Typed{pitch,
                "\u2212"
                "1 oct",
                -12},
          Typed{scanning, "2\u00D7", 2}, Typed{leftGain, "50", 0.5f}, Typed{pan, "30 L", -0.3f},
          Typed{amplitude, "-6 dB", 0.50119f}, Typed{quarters, "3", 3},
          Typed{leftSubdivision, "1/8t", 12}}) {
        SCOPED_TRACE(text);
        EXPECT_TRUE(hand.type(id, text).ok());
        EXPECT_NEAR(displayed(id), expected, 1e-3 * std::abs(expected));
    }
    EXPECT_EQ(engine().echoTimeL, 330.0f);
    EXPECT_FLOAT_EQ(engine().echoGainL, 0.5f);
    heard(), edits.clear();
    for (const char* const wrong : {"", "abc", "401 Hz", "0.1", "1/8", "nan"}) {
        const Result<void> refused = hand.type(density, wrong);
        ASSERT_FALSE(refused.ok()) << wrong;
        EXPECT_NE(refused.message().find("Density takes 0.5 to 400 Hz, not"), std::string::npos);
    }
    EXPECT_NEAR(displayed(density), 200.0f, 1e-3f);
    EXPECT_EQ(heard() + edits, "");
    EXPECT_TRUE(hand.type(density, "80").ok());
    EXPECT_EQ(heard() + edits, "[5=5]5(Density)");
}

TEST_F(Hands, ChooseFromTheMenuAndTakeEachChoiceBackByItsName) {
    ASSERT_TRUE(hand.type(width, "0.75").ok());
    for (const MenuRow& row : knobMenu(context, hand, width, calls))
        EXPECT_EQ(row.isEnabled, row.text != "Paste"); // nothing has been copied
    choose("Copy 0.75", width);
    source.asMain([](AudioUnitViewController& view) { view.edits.clear(); });
    const auto type = [&](AssignmentType wanted) {
        return plugin.system().view.assignments.typeOf(knob(width)) == wanted;
    };
    const struct {
        const char* row;
        ControlId id;
        const char* undo;
        std::function<bool()> done;
    } choices[] = {
        {"Paste", pan, "Pan", [&] { return displayed(pan) == 0.75f; }}, // no side: -1 to 1
        {"Reset to 0.25", width, "Width reset", [&] { return displayed(width) == 0.25f; }},
        {"Randomise", width, "Width random", [&] { return displayed(width) != 0.25f; }},
        {"Lock", width, "Width lock",
         [&] {
             const float before = displayed(width);
             return hand.randomise(width), displayed(width) == before;
         }},
        {"LFO", width, "Width assignment", [&] { return type(AssignmentType::lfo); }},
        {"MIDI: learn", width, "Width MIDI",
         [&] {
             plugin.midi({0xB0, 7, 100});
             plugin.render();
             return type(AssignmentType::midi);
         }},
        {"Second finger", width, "Width assignment",
         [&] { return type(AssignmentType::secondFinger); }},
        {"Moved by nothing", width, "Width assignment",
         [&] { return type(AssignmentType::none); }}};
    const auto state = [&] {
        return source.asMain([](AudioUnitViewController& view) { return view.editState(); });
    };
    for (const auto& [row, id, name, done] : choices) {
        SCOPED_TRACE(row);
        const PropertyDictionary before = state();
        choose(row, id);
        EXPECT_TRUE(done());
        const PropertyDictionary after = state();
        EXPECT_EQ(plugin.system().view.edits.undoName(), name);
        undo(context);
        EXPECT_TRUE(state() == before);
        redo(context);
        EXPECT_TRUE(state() == after);
    }
    EXPECT_TRUE(plugin.system().view.midiManager.bindings().empty());
}

} // namespace
} // namespace zephyra
