// Who hears of a control's events, also when the listeners change while they are told.

#include "controls/control.h"

#include <gtest/gtest.h>

namespace zephyra {
namespace {

using namespace control_event;

TEST(Control, TellsOnceWhoListensAndWhoIsStillThere) {
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
