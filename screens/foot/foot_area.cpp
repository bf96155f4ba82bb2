#include "screens/foot/foot_area.h"

#include "screens/draw/brush.h"

#include <cmath>

namespace zephyra {

namespace {

int widthOf(const juce::Font& font, const std::string& text) {
    return static_cast<int>(std::ceil(font.getStringWidthFloat(brush::text(text)))) + 2;
}

} // namespace

FootArea::FootArea(ScreenContext& context)
    : context_(context), line_(context), cpu_(context, "CPU share", helpText(HelpId::cpu)),
      dropped_(context, "Dropped grains", helpText(HelpId::dropped),
               [this] { line_.forgetDropped(); }) {
    setOpaque(true);
    setFocusContainerType(FocusContainerType::focusContainer);
    addAndMakeVisible(cpu_);
    addAndMakeVisible(dropped_);
}

/// A drawer may come, or go, with what the window is in.
void FootArea::makeTabs() {
    bool changed = false;
    for (std::size_t i = 0; i < kDrawers; ++i) {
        const auto& toggle = context_.toggleDrawer[i];
        if (static_cast<bool>(toggle) == static_cast<bool>(tabs_[i])) continue;
        changed = true;
        tabs_[i].reset();
        if (!toggle) continue;
        tabs_[i] = std::make_unique<FootTabButton>(context_, kFootTabs[i].title,
                                                   helpText(kFootTabs[i].help));
        tabs_[i]->setFace({.isBare = true});
        tabs_[i]->setSwitch(true);
        tabs_[i]->pressed = [this, i] { context_.toggleDrawer[i](); };
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
    cpu_.place(boxes_.cpu, textPixels());
    dropped_.place(boxes_.dropped, textPixels());
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
            tabs_[i]->show(kFootTabs[i].title, textPixels(), context_.openDrawers.test(i));
    const FootShown& now = line_.shown();
    cpu_.show(now.cpu, now.isLate ? palette::kAccent : palette::kText);
    dropped_.show(now.dropped, now.dropsNow ? palette::kBright : palette::kFaint);
    if (now.dropped.size() != shown_.dropped.size()) place(); // digits are equally wide
    if (now.help != shown_.help) repaint(brush::rectangle(boxes_.help));
    shown_ = now;
}

void FootArea::paint(juce::Graphics& graphics) {
    graphics.fillAll(brush::colour(palette::kGround));
    graphics.setColour(brush::colour(palette::kLine));
    graphics.fillRect(0, 0, getWidth(), juce::jmax(1, layout_.px(1)));
    const bool hasTabs = boxes_.help.x > layout_.px(layout_.measures.margin);
    graphics.setFont(brush::medium(textPixels()));
    graphics.setColour(brush::colour(palette::kFaint));
    brush::drawLine(graphics, shown_.help, brush::floats(boxes_.help),
                    hasTabs ? juce::Justification::centred : juce::Justification::centredLeft);
}

} // namespace zephyra
