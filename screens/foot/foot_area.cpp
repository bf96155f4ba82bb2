#include "screens/foot/foot_area.h"

#include "screens/draw/brush.h"

#include <cmath>

namespace zephyra {

namespace {

int widthOf(const juce::Font& font, const std::string& text) {
    return static_cast<int>(std::ceil(font.getStringWidthFloat(brush::text(text)))) + 2;
}

} // namespace

FootArea::FootArea(ScreenContext& context) : ScreenArea(context), line_(context) {
    setOpaque(true);
    setFocusContainerType(FocusContainerType::focusContainer);
}

/// A drawer may come, or go, with what the window is in.
void FootArea::makeTabs() {
    bool changed = false;
    for (std::size_t i = 0; i < kDrawers; ++i) {
        const auto& toggle = context().toggleDrawer[i];
        if (static_cast<bool>(toggle) == static_cast<bool>(tabs_[i])) continue;
        changed = true;
        tabs_[i].reset();
        if (!toggle) continue;
        tabs_[i] = std::make_unique<FootTabButton>(context(), kFootTabs[i].title,
                                                   helpText(kFootTabs[i].help));
        tabs_[i]->setFace({.isBare = true});
        tabs_[i]->setSwitch(true);
        tabs_[i]->pressed = [this, i] { context().toggleDrawer[i](); };
        addAndMakeVisible(*tabs_[i]);
    }
    if (changed) place();
}

void FootArea::place() {
    const juce::Font medium = brush::medium(textPixels());
    FootWidths widths{.cpu = widthOf(medium, "CPU 100 %"),
                      .dropped = widthOf(medium, line_.shown().dropped)};
    for (std::size_t i = 0; i < kDrawers; ++i)
        if (tabs_[i]) widths.tabs[i] = widthOf(medium, kFootTabs[i].title);
    boxes_ = footBoxes(layout_, widths);
    for (std::size_t i = 0; i < kDrawers; ++i)
        if (tabs_[i]) tabs_[i]->place(boxes_.tabs[i], layout_.scale);
    repaint();
}

void FootArea::layOut(const ScreenLayout& layout) {
    layout_ = layout;
    setBounds(brush::rectangle(layout.foot));
    makeTabs();
    place();
}

void FootArea::frame(const FrameTime&) {
    makeTabs();
    for (std::size_t i = 0; i < kDrawers; ++i)
        if (tabs_[i])
            tabs_[i]->show(kFootTabs[i].title, textPixels(), context().openDrawers.test(i));
    const FootShown& now = line_.shown();
    if (now == shown_) return;
    if (now.dropped.size() != shown_.dropped.size()) place(); // digits are equally wide
    if (now.help != shown_.help) repaintText(boxes_.help);
    if (now.cpu != shown_.cpu || now.isLate != shown_.isLate) repaintText(boxes_.cpu);
    if (now.dropped != shown_.dropped || now.dropsNow != shown_.dropsNow)
        repaintText(boxes_.dropped);
    shown_ = now;
}

void FootArea::paint(juce::Graphics& graphics) {
    graphics.fillAll(brush::colour(palette::kGround));
    graphics.setColour(brush::colour(palette::kLine));
    graphics.fillRect(0, 0, getWidth(), juce::jmax(1, layout_.px(1)));
    const auto draw = [&](const std::string& text, const Box& box, Color colour,
                          juce::Justification where) {
        graphics.setFont(brush::medium(textPixels()));
        graphics.setColour(brush::colour(colour));
        brush::drawLine(graphics, text, brush::floats(box), where);
    };
    const bool hasTabs = boxes_.help.x > layout_.px(layout_.measures.margin);
    draw(shown_.help, boxes_.help, palette::kFaint,
         hasTabs ? juce::Justification::centred : juce::Justification::centredLeft);
    draw(shown_.cpu, boxes_.cpu, shown_.isLate ? palette::kAccent : palette::kText,
         juce::Justification::centredRight);
    draw(shown_.dropped, boxes_.dropped, shown_.dropsNow ? palette::kBright : palette::kFaint,
         juce::Justification::centredRight);
}

void FootArea::mouseMove(const juce::MouseEvent& event) {
    const auto at = event.getPosition();
    if (!context().help) return;
    if (boxes_.cpu.contains(at.x, at.y))
        context().help(helpText(HelpId::cpu));
    else if (boxes_.dropped.contains(at.x, at.y))
        context().help(helpText(HelpId::dropped));
    else
        context().help({});
}

void FootArea::mouseExit(const juce::MouseEvent&) {
    if (context().help) context().help({});
}

void FootArea::mouseUp(const juce::MouseEvent& event) {
    if (boxes_.dropped.contains(event.x, event.y)) line_.forgetDropped();
}

} // namespace zephyra
