// The values of knobs: ranges, curves, gestures and labels; what a finger does to them; and who
// hears of a control's events, also when the listeners change while they are told.

#include "controls/named_knobs.h"
#include "platform/random_source.h"
#include "tests/support/testing.h"

namespace zephyra {
namespace {

TEST(Knob, KeepsToItsRangeAndRefusesWhatIsNoNumber) {
    MOK_KNOB_EXP knob;
    knob.setRange(-2.0f, 6.0f);
    knob.setValueNorm(0.75f);
    for (const float bad : {INFINITY, -INFINITY, NAN}) {
        knob.setValue(bad);
        knob.setValueExp(bad);
        knob.setRange(0.0f, bad);
        knob.setStepness(bad > 0.0f ? bad : -1.0f);
    }
    EXPECT_EQ(knob.valueExp(), 2.5f); // -2 + 8 * 0.75 ^ 2
    EXPECT_EQ(knob.angleForValue(4.0f), 90.0f);
    EXPECT_EQ(knob.valueForAngle(-90.0f), 0.0f);
    knob.setRange(-2.0f, 1.0f);
    EXPECT_EQ(knob.valueNorm(), 1.0f);
    MOK_KNOB_LOG mirror;
    mirror.setValueLog(0.7f);
    EXPECT_FLOAT_EQ(mirror.value(), 0.49f);
    EXPECT_FLOAT_EQ(mirror.valueLog(), 0.7f);
}

TEST(Knob, GoesToARandomPlaceOrItsDefaultAndTellsAll) {
    MOK_KNOB_EXP knob;
    knob.setRange(10.0f, 110.0f);
    int told = 0;
    knob.addTarget(&told, "t", control_event::touchCancel, [&](Control&) { ++told; });
    RandomSource random;
    random.setGenerator([] { return 0xA0000000u; }); // 1/4, and the top bit
    knob.genRandomic(random);
    EXPECT_NEAR(knob.value(), 35.0f, 1e-4f);
    knob.setDefaultValue(35.0f);
    knob.currentColorIndex = 3;
    knob.resetsDefault();
    EXPECT_EQ(knob.value(), 60.0f); // half the way, squared, is a quarter
    EXPECT_EQ(knob.currentColorIndex, 0);
    knob.setDefaultValue(-5.0f);
    knob.resetsDefault();
    knob.isRandomizable = knob.isDefaultResettable = false;
    knob.setDefaultValue(35.0f);
    knob.genRandomic(random);
    knob.resetsDefault();
    EXPECT_EQ(std::tuple(knob.value(), told), std::tuple(10.0f, 3));
}

TEST(NamedKnobs, ShowNumberAndUnit) {
    MOK_KNOB_EXP plain;
    MokKnobTime time;
    MokKnobHZ hertz("h", 1.0f);
    MokKnobMidiNote note;
    const auto label = [](MOK_KNOB& knob, float shown) {
        if (knob.maximumValue() < 127.0f) knob.setRange(0.0f, 20000.0f);
        knob.setDisplayedValue(shown);
        return knob.updateLabel();
    };
    EXPECT_EQ(label(plain, 312.5f), "312.50 ");
    plain._postfix = "ms";
    plain._precision = 0;
    EXPECT_EQ(label(plain, 25.9f), "25 ms");
    EXPECT_EQ(label(time, 0.3f) + label(time, 0.99996f) + label(time, 1.25f),
              "300.0 ms1.00 s1.25 s");
    EXPECT_EQ(label(hertz, 0.25f) + label(hertz, 9.998f), "0.25 Hz10.0 Hz");
    EXPECT_EQ(label(hertz, 220.0f) + label(hertz, 999.96f), "220.0 Hz1.00 kHz");
    EXPECT_EQ(label(note, 60.0f) + label(note, 68.6f) + midiNoteName(-3), "C4A4C-1");
}

TEST(NamedKnobs, StandOnANameAndStepToTheLastOne) {
    MokKnobEnum knob("k", {"sine", "saw", "noise"});
    knob.isSlider = true;
    knob.beginTracking({});
    for (int x = 1; x <= 91; ++x) // short drags add up: names are 180 points apart
        knob.continueTracking({double(x), 0});
    EXPECT_EQ(knob.updateLabel(), "saw");
    knob.setValueNorm(0.8f);
    knob.step(-1);
    EXPECT_EQ(knob.updateLabel(), "saw");
    knob.step(5);
    EXPECT_EQ(knob.updateLabel(), "noise");
    knob.setNames({});
    EXPECT_EQ(knob.updateLabel(), "");
}

TEST(KnobTouch, TurnsAsFarAsTheFingerGoesAndBackAtOnceFromBeyondAnEnd) {
    const std::pair<int, Point> ways[] = {
        {kHorizontal, {1, -9}}, {kVertical, {9, -1}}, {kDiagonal, {0.5, -0.5}}};
    const std::pair<int, float> stops[] = {{90, 0.75f}, {999, 1.0f}, {963, 0.9f}, {0, 0.0f}};
    for (const auto& [style, way] : ways) {
        MOK_KNOB knob;
        knob.setKnobInteractionStyle(style);
        knob.beginTracking({7, 5});
        for (const auto& [points, value] : stops) {
            knob.continueTracking({7 + way.x * points, 5 + way.y * points});
            EXPECT_FLOAT_EQ(knob.value(), value) << style << " at " << points;
        }
    }
}

TEST(KnobTouch, FollowsTheAngleAndStaysAtTheEndAcrossTheBottom) {
    MOK_KNOB knob;
    knob.setCenter({100, 100});
    const auto valueAt = [&](double degrees, double radius = 20) {
        const double a = degrees * 3.14159265358979 / 180;
        knob.continueTracking({100 + radius * std::sin(a), 100 - radius * std::cos(a)});
        return knob.value();
    };
    knob.beginTracking({100, 80});
    EXPECT_FLOAT_EQ(valueAt(90), 0.75f);
    EXPECT_FLOAT_EQ(valueAt(-90, 3.9), 0.75f); // too near the centre to mean an angle
    EXPECT_FLOAT_EQ(valueAt(170), 350.0f / 360);
    for (const double beyond : {190, 340, 450, 530, 570}) EXPECT_EQ(valueAt(beyond), 1.0f);
    EXPECT_FLOAT_EQ(valueAt(530), 350.0f / 360); // back over the bottom
}

TEST(KnobTouch, TellsEveryChangeAtOnceOrInTheEnd) {
    using namespace control_event;
    MOK_KNOB knob;
    knob.setKnobInteractionStyle(kVertical);
    std::string heard;
    for (const auto& [name, event] :
         {std::pair("d", touchDown), {"v", valueChanged}, {"u", touchUpInside}, {"c", touchCancel}})
        knob.addTarget(&heard, name, event, [&heard, n = name](Control&) { heard += n; });
    const auto drag = [&](Point to) {
        heard.clear();
        knob.beginTracking({});
        knob.continueTracking(to);
        knob.continueTracking({9, to.y});
        heard += '.';
    };
    knob.endTracking({0, -9});
    drag({0, std::nan("")});
    drag({0, -9});
    knob.endTracking({9, -10});
    EXPECT_EQ(heard, "dv.vu");
    knob._continuous = false;
    drag({0, -9});
    knob.endTracking({9, -9});
    EXPECT_EQ(heard, "d.vu");
    drag({0, 9});
    knob.userInteractionEnabled = false;
    knob.endTracking({0, 90}); // must not leave the drag open
    EXPECT_EQ(heard, "d.vc");
    EXPECT_FLOAT_EQ(knob.value(), 0.5f + 10.0f / 360);
}

TEST(Control, TellsOnceWhoListensAndWhoIsStillThere) {
    using namespace control_event;
    std::string heard;
    const int me = 0, other = 0;
    Control control("c");
    const auto add = [&](const void* target, const char* name, ControlEvents events) {
        control.addTarget(target, name, events, [&heard, name](Control&) { heard += name; });
    };
    add(&me, "a", touchDown | valueChanged);
    control.addTarget(&me, "b", valueChanged, [&](Control& sender) {
        heard += "b";
        sender.removeTarget(&me, "b", all);
        sender.removeTarget(&other, "c", valueChanged | touchDown);
        add(&me, "e", touchDown | valueChanged);
    });
    add(&other, "c", valueChanged);
    add(&other, "d", valueChanged | touchCancel);
    control.sendActionsForControlEvents(all);
    EXPECT_EQ(heard, "abd");
    EXPECT_FALSE(control.hasTarget(&other, "c") || control.hasTarget(&me, "b"));
    add(&me, "a", touchDown | valueChanged); // replaces itself
    control.removeTarget(&other, {}, valueChanged);
    control.suppressesEvents = true;
    control.sendEventValueChanged();
    control.suppressesEvents = false;
    control.sendEventValueChanged();
    control.sendActionsForControlEvents(touchCancel);
    EXPECT_EQ(heard, "abdaed");
}

} // namespace
} // namespace zephyra
