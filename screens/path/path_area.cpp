#include "screens/path/path_area.h"

#include "screens/draw/brush.h"
#include "screens/path/envelope_tile.h"
#include "screens/path/small_cells.h"

#include <algorithm>

namespace zephyra {

using namespace palette;

namespace {

juce::Font titleFont(const SectionPlace& place) {
    return brush::medium(place.titleText);
}

std::vector<EnvelopeCurve> curvesOf(ScreenContext& context) {
    return context.source.asMain([](AudioUnitViewController&) {
        RandomSource random;
        random.seed(1); // a picture of chance, not the one that sounds
        auto curves = envelopeCurves(random);
        return curves ? std::move(curves.value()) : std::vector<EnvelopeCurve>();
    });
}

void arrowHead(juce::Graphics& graphics, float x, float y, float size, float width) {
    juce::Path head;
    head.startNewSubPath(x - size, y - size);
    head.lineTo(x, y);
    head.lineTo(x - size, y + size);
    graphics.strokePath(head, juce::PathStrokeType(width));
}

} // namespace

PathArea::PathArea(ScreenContext& context)
    : context_(context), hand_(context), curves_(curvesOf(context)) {
    setOpaque(true);
    setTitle("Knobs");
    setFocusContainerType(FocusContainerType::focusContainer);
    addCells();
    addSwitches();
    context_.source.add(model_);
}

PathArea::~PathArea() {
    context_.source.remove(model_);
}

void PathArea::addCells() {
    for (const PathCell& cell : pathCells()) {
        switch (cell.kind) {
        case PathCellKind::knob:
            cells_.push_back(std::make_unique<KnobCell>(context_, hand_, look_, cell));
            break;
        case PathCellKind::envelope:
            cells_.push_back(std::make_unique<EnvelopeTile>(context_, cell, curves_,
                                                            [this] { openEnvelopes(); }));
            break;
        case PathCellKind::voices:
            cells_.push_back(std::make_unique<VoicesCell>(context_, cell));
            break;
        case PathCellKind::keep:
            cells_.push_back(
                std::make_unique<KeepCell>(context_, cell, [this] { hand_.keepLive(); }));
            break;
        }
        addChildComponent(*cells_.back());
    }
}

void PathArea::addSwitches() {
    const auto add = [this](ControlId id, SwitchShape shape) {
        switches_.push_back(std::make_unique<SectionSwitch>(
            context_, id, shape, [this](ControlId flipped) { hand_.flip(flipped); }));
        addAndMakeVisible(*switches_.back());
    };
    int focus = 1;
    for (const PathSection& section : pathSections()) {
        if (section.hasSwitch) {
            add(section.switchId, SwitchShape::pill);
            switches_.back()->setExplicitFocusOrder(focus++);
        }
        if (section.hasSync) {
            add(section.syncId, SwitchShape::syncChip);
            switches_.back()->setExplicitFocusOrder(focus++);
        }
        for (const auto& cell : cells_)
            if (cell->cell().section == section.section) cell->setExplicitFocusOrder(focus++);
    }
}

KnobCell* PathArea::knobCell(ControlId id) {
    for (const auto& cell : cells_)
        if (auto* const knob = dynamic_cast<KnobCell*>(cell.get()))
            if (knob->cell().id == id) return knob;
    return nullptr;
}

KnobCell* PathArea::knobCellAt(juce::Point<int> at) {
    return dynamic_cast<KnobCell*>(getComponentAt(at));
}

void PathArea::openEnvelopes() {
    if (curves_.empty()) return; // memory was too short for them
    beforePicker_ = getCurrentlyFocusedComponent();
    picker_ = std::make_unique<EnvelopePicker>(
        curves_, model_.envelope(),
        EnvelopePickerCalls{[this](std::size_t index) { hand_.pickEnvelope(index); },
                            [this] { closeEnvelopes(); }});
    picker_->place(layout_);
    addAndMakeVisible(*picker_);
    picker_->grabKeyboardFocus();
}

void PathArea::closeEnvelopes() {
    const bool hadKeyboard = picker_->hasKeyboardFocus(true);
    picker_.reset();
    if (hadKeyboard && beforePicker_) beforePicker_->grabKeyboardFocus();
}

void PathArea::layOut(const ScreenLayout& layout) {
    layout_ = layout;
    look_.layOut();
    setBounds(brush::rectangle(layout.path));
    placeCells();
    if (picker_) picker_->place(layout);
    repaint();
}

void PathArea::placeCells() {
    for (const auto& cell : cells_) {
        cell->useShortName(usesShortName(cell->cell(), layout_));
        cell->setPlace(placeOf(cell->cell(), layout_));
    }
    for (const PathSection& section : pathSections()) {
        const SectionPlace place = placeOf(section, layout_);
        const double text = layout_.measures.unitText * layout_.scale;
        for (const auto& one : switches_) {
            if (section.hasSwitch && one->id() == section.switchId)
                one->place(place.switchBox, text);
            if (section.hasSync && one->id() == section.syncId) one->place(place.syncBox, text);
        }
    }
}

void PathArea::frame(const FrameTime&) {
    hand_.frame(juce::Time::getMillisecondCounterHiRes() / 1000.0); // the clock of its notches
    showCells();
}

void PathArea::showCells() {
    const PathSync sync = model_.sync();
    for (const auto& cell : cells_) {
        const bool there = isThere(cell->cell(), sync);
        if (there) cell->show(model_);
        cell->setVisible(there);
    }
    for (const auto& one : switches_) one->show(model_);
    std::vector<bool> off;
    for (const PathSection& section : pathSections()) off.push_back(isOff(section));
    if (off == shownOff_ && sync == shownSync_) return;
    shownOff_ = std::move(off);
    shownSync_ = sync;
    repaint();
}

bool PathArea::isOff(const PathSection& section) const {
    return section.hasSwitch && !model_.isOn(section.switchId);
}

void PathArea::paint(juce::Graphics& graphics) {
    graphics.fillAll(brush::colour(kGround));
    if (graphics.getClipBounds().getY() > layout_.px(layout_.measures.line * 2.0)) return;
    graphics.setColour(brush::colour(kLine));
    graphics.fillRect(0, 0, getWidth(), std::max(1, layout_.px(1)));
    for (const PathSection& section : pathSections()) paintSection(graphics, section);
}

void PathArea::paintSection(juce::Graphics& graphics, const PathSection& section) const {
    const SectionPlace place = placeOf(section, layout_);
    const juce::Font font = titleFont(place);
    const juce::String title(section.title);
    const float width = font.getStringWidthFloat(title);
    const auto height = static_cast<float>(place.titleText * 1.5);
    const auto y = static_cast<float>(place.lineY), x = static_cast<float>(place.titleX);
    graphics.setFont(font);
    graphics.setColour(brush::colour(isOff(section) ? kDim : kBright));
    graphics.drawText(title, juce::Rectangle(x, y - height / 2, width + 2, height),
                      juce::Justification::centredLeft, false);

    const auto unit = static_cast<float>(place.titleText / 13.0);
    const float space = 8 * unit, least = 5 * unit;
    const auto to = static_cast<float>(place.lineTo);
    const float thick = std::max(1.0f, std::floor(unit + 0.2f));
    const float lineY = std::floor(y) + thick / 2;
    graphics.setColour(brush::colour(kTrack));
    const auto line = [&](float from, float end) {
        if (end - from < least) return;
        if (!isOff(section)) return graphics.drawLine(from, lineY, end, lineY, thick);
        const float dots[] = {2.0f * unit, 4.0f * unit};
        graphics.drawDashedLine({from, lineY, end, lineY}, dots, 2, thick);
    };
    float last = x + width + space;
    if (section.hasSync) {
        line(last, static_cast<float>(place.syncBox.x) - space);
        last = static_cast<float>(place.syncBox.right()) + 0.75f * space;
    }
    line(last, to);
    if (section.section != Section::output && !isOff(section) && to - last >= least)
        arrowHead(graphics, to, lineY, 3.5f * unit, thick);
}

} // namespace zephyra
