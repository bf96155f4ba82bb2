#include "screens/meter/meter_area.h"

#include "screens/draw/brush.h"
#include "screens/model/help_texts.h"

#include <utility>

namespace zephyra {

namespace {

constexpr Color kRms = palette::hex(0x94A3B9), kPeak = palette::hex(0x4A586D);

} // namespace

MeterArea::MeterArea(ScreenContext& context)
    : ScreenControl(context, "Level meter"), model_(context) {
    setOpaque(true);
    setWantsKeyboardFocus(true);
    setMouseClickGrabsKeyboardFocus(false);
    setHelp(helpText(HelpId::meter));
}

std::unique_ptr<juce::AccessibilityHandler> MeterArea::createAccessibilityHandler() {
    return std::make_unique<juce::AccessibilityHandler>(
        *this, juce::AccessibilityRole::image,
        juce::AccessibilityActions().addAction(juce::AccessibilityActionType::press,
                                               [this] { clear(); }));
}

void MeterArea::layOut(const ScreenLayout& layout) {
    layout_ = layout;
    setBounds(brush::rectangle(layout.meter));
    boxes_ = meterBoxes(layout);
    for (std::size_t i = 0; i < painted_.size(); ++i) update(i);
    repaint();
}

void MeterArea::frame(const FrameTime& time) {
    const bool wasOn = model_.isOn();
    if (!model_.advance(time)) return;
    for (std::size_t i = 0; i < painted_.size(); ++i) update(i);
    const std::string highest = meterText(model_.meter().highestPeak());
    if (highest != highest_) {
        highest_ = highest;
        setValue(highest + " dB");
        repaint(brush::rectangle(boxes_.highest));
    }
    if (wasOn != model_.isOn()) repaint();
}

/// Repaints from the highest to the lowest pixel that differs, and its neighbours that the hold's
/// line covers.
void MeterArea::update(std::size_t channel) {
    const Box& bar = boxes_.bars[channel];
    const MeterPixels now = meterPixels(model_.meter().channels()[channel], bar);
    const MeterPixels before = std::exchange(painted_[channel], now);
    int top = bar.bottom(), bottom = bar.y;
    if (now.clipped != before.clipped) {
        repaint(brush::rectangle(boxes_.clips[channel]));
        top = bottom = now.hold; // whose line has another colour, too
    }
    const auto span = [&](int from, int to) {
        if (from == to) return;
        top = juce::jmin(top, from, to);
        bottom = juce::jmax(bottom, from, to);
    };
    span(before.rms, now.rms);
    span(before.peak, now.peak);
    span(before.hold, now.hold);
    const int line = layout_.px(2);
    if (top <= bottom) repaint(bar.x, top - line, bar.width, bottom - top + 2 * line);
}

void MeterArea::paint(juce::Graphics& graphics) {
    graphics.fillAll(brush::colour(palette::kGround));
    graphics.setColour(brush::colour(palette::kLine));
    graphics.fillRect(0, 0, juce::jmax(1, layout_.px(1)), getHeight());
    for (std::size_t i = 0; i < painted_.size(); ++i) paintChannel(graphics, i);
    paintScale(graphics);
    paintFocus(graphics, layout_.px(2));
}

void MeterArea::paintChannel(juce::Graphics& graphics, std::size_t channel) const {
    const Box &bar = boxes_.bars[channel], &clip = boxes_.clips[channel];
    const MeterPixels& now = painted_[channel];
    graphics.setColour(brush::colour(palette::kRaised));
    graphics.fillRect(brush::rectangle(bar));
    graphics.setColour(brush::colour(now.clipped ? palette::kAccent : palette::kTrack));
    graphics.fillRect(brush::rectangle(clip));
    if (!model_.isOn()) return;
    const auto fill = [&](int y, Color colour) {
        graphics.setColour(brush::colour(colour));
        graphics.fillRect(bar.x, y, bar.width, bar.bottom() - y);
    };
    fill(now.peak, kPeak);
    fill(now.rms, kRms);
    if (now.hold >= bar.bottom()) return;
    const int line = layout_.px(2);
    graphics.setColour(brush::colour(now.clipped ? palette::kAccent : palette::kBright));
    graphics.fillRect(bar.x, juce::jmax(bar.y, now.hold - line / 2), bar.width, line);
}

void MeterArea::paintScale(juce::Graphics& graphics) const {
    const auto draw = [&](const juce::String& text, juce::Rectangle<int> box, Color colour,
                          double units, juce::Justification where) {
        if (!graphics.clipRegionIntersects(box)) return;
        graphics.setColour(brush::colour(colour));
        graphics.setFont(brush::medium(units * layout_.scale));
        graphics.drawText(text, box, where, false);
    };
    const LayoutMeasures& of = layout_.measures;
    if (model_.isOn())
        draw(brush::text(highest_), brush::rectangle(boxes_.highest), palette::kBright, of.nameText,
             juce::Justification::centred);
    draw(model_.isOn() ? "dB" : "off", brush::rectangle(boxes_.unit), palette::kFaint, of.unitText,
         juce::Justification::centred);
    const int x = boxes_.scaleX, wide = getWidth() - x, high = layout_.px(16);
    for (const int level : kMeterNumbers) {
        const int y = boxes_.bars[0].y + meterY(level, boxes_.bars[0].height);
        if (layout_.step == LayoutStep::compact) {
            graphics.setColour(brush::colour(palette::kDim));
            graphics.fillRect(x, y, layout_.px(6), juce::jmax(1, layout_.px(1)));
            continue;
        }
        draw(level == 0 ? juce::String("0")
                        : juce::String::fromUTF8("\xe2\x88\x92") + juce::String(-level),
             {x, y - high / 2, wide, high}, palette::kFaint, of.unitText,
             juce::Justification::centredLeft);
    }
}

void MeterArea::clear() {
    model_.clear();
    for (std::size_t i = 0; i < painted_.size(); ++i) update(i);
}

void MeterArea::mouseDown(const juce::MouseEvent& event) {
    if (!event.mods.isPopupMenu()) return clear();
    openMenu({getX() + event.x, getY() + event.y, 0, 0});
}

void MeterArea::openMenu(const Box& at) {
    if (context().openMenu) context().openMenu(at, displayMenu(context()));
}

bool MeterArea::takeKey(const juce::KeyPress& key) {
    if (key == juce::KeyPress(juce::KeyPress::F10Key, juce::ModifierKeys::shiftModifier, 0))
        return openMenu({getX(), getY(), getWidth(), 0}), true;
    if (key != juce::KeyPress::returnKey) return false;
    clear();
    return true;
}

} // namespace zephyra
