#include "screens/model/top/edit_line.h"

#include "screens/model/help_texts.h"
#include "screens/model/path/knob_hand.h"

namespace zephyra {

namespace {

constexpr int kAmounts[] = {5, 10, 25, 50, 100}; // percent

void finishSteps(ScreenContext& context) {
    for (KnobHand* const hand : context.hands) hand->endSteps();
}

} // namespace

void undo(ScreenContext& context) {
    finishSteps(context);
    context.source.asMain([](AudioUnitViewController& view) { view.edits.undo(); });
}

void redo(ScreenContext& context) {
    context.source.asMain([](AudioUnitViewController& view) { view.edits.redo(); });
}

EditLine::EditLine(ScreenContext& context) : context_(context) {
    context_.source.add(*this);
}

EditLine::~EditLine() {
    context_.source.remove(*this);
}

ButtonFace EditLine::face(EditButton button) const {
    const auto slot = [](bool isIt) {
        return ButtonFace{.light = isIt ? ButtonLight::on : ButtonLight::off, .isBare = true};
    };
    switch (button) {
    case EditButton::randomize:
        return {.isBare = true};
    case EditButton::undo:
        return {.isEnabled = !shown_.undo.empty(), .isBare = true};
    case EditButton::redo:
        return {.isEnabled = !shown_.redo.empty(), .isBare = true};
    case EditButton::compareA:
        return slot(!shown_.isB);
    case EditButton::compareB:
        break;
    }
    return slot(shown_.isB);
}

std::string EditLine::help(EditButton button) const {
    switch (button) {
    case EditButton::randomize:
        return helpText(HelpId::randomise, std::to_string(percent_) + " %");
    case EditButton::undo:
        return shown_.undo.empty() ? helpText(HelpId::undoNothing)
                                   : helpText(HelpId::undo, shown_.undo);
    case EditButton::redo:
        return shown_.redo.empty() ? helpText(HelpId::redoNothing)
                                   : helpText(HelpId::redo, shown_.redo);
    case EditButton::compareA:
        return helpText(shown_.isB ? HelpId::playA : HelpId::playsA);
    case EditButton::compareB:
        break;
    }
    return helpText(shown_.isB ? HelpId::playsB : HelpId::playB);
}

void EditLine::press(EditButton button) {
    if (button == EditButton::undo) return undo(context_);
    if (button == EditButton::redo) return redo(context_);
    finishSteps(context_);
    context_.source.asMain([&](AudioUnitViewController& view) {
        if (button == EditButton::randomize)
            view.randomizer.randomize(percent_ / 100.0);
        else
            view.compare.choose(button == EditButton::compareA ? CompareSlots::Slot::a
                                                               : CompareSlots::Slot::b);
    });
}

std::vector<MenuRow> EditLine::randomizeMenu() {
    std::vector<MenuRow> rows;
    for (const int percent : kAmounts)
        rows.push_back({.text = std::to_string(percent) + " %",
                        .chosen =
                            [this, percent] {
                                percent_ = percent;
                                press(EditButton::randomize);
                            },
                        .isTicked = percent == percent_});
    return rows;
}

void EditLine::read(AudioUnitViewController& view, const FrameTime&) {
    shown_ = {.undo = view.edits.undoName(),
              .redo = view.edits.redoName(),
              .isB = view.compare.chosen() == CompareSlots::Slot::b};
}

} // namespace zephyra
