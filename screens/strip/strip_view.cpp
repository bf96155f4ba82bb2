#include "screens/strip/strip_view.h"

#include "screens/draw/brush.h"

namespace zephyra {

namespace {

juce::Colour ground() {
    return brush::colour(palette::kStage).darker(0.2f);
}

class Handler final : public juce::AccessibilityHandler {
public:
    explicit Handler(StripView& view)
        : AccessibilityHandler(
              view, juce::AccessibilityRole::toggleButton,
              juce::AccessibilityActions()
                  .addAction(juce::AccessibilityActionType::press, [&view] { view.toggle(); })
                  .addAction(juce::AccessibilityActionType::toggle, [&view] { view.toggle(); })),
          view_(view) {}
    juce::AccessibleState getCurrentState() const override {
        const auto state = AccessibilityHandler::getCurrentState().withCheckable();
        return view_.isOn() ? state.withChecked() : state;
    }

private:
    StripView& view_;
};

} // namespace

StripView::StripView(ScreenContext& context, const std::string& title, const std::string& help)
    : context_(context), help_(help) {
    setOpaque(true);
    setWantsKeyboardFocus(true);
    setMouseClickGrabsKeyboardFocus(false);
    setTitle(brush::text(title));
    setHelpText(brush::text(help));
}

std::unique_ptr<juce::AccessibilityHandler> StripView::createAccessibilityHandler() {
    return std::make_unique<Handler>(*this);
}

void StripView::layOut(const ScreenLayout& layout, const Box& box) {
    layout_ = layout;
    setBounds(brush::rectangle(box));
    picture_.setSize(box.width, box.height);
    {
        juce::Graphics graphics(picture_.ground());
        graphics.fillAll(ground());
        drawGround(graphics);
    }
    laidOut();
    repaint();
}

void StripView::paint(juce::Graphics& graphics) {
    {
        SpanImage::Pen pen(picture_);
        if (isOn()) drawTrace(pen);
    }
    graphics.drawImageAt(picture_.image(), 0, 0);
    if (isOn()) {
        drawText(graphics);
    } else {
        graphics.setColour(brush::colour(palette::kDim));
        graphics.setFont(brush::medium(px(layout_.measures.unitText)));
        graphics.drawText(getTitle() + " off", getLocalBounds(), juce::Justification::centred,
                          false);
    }
    if (!hasKeyboardFocus(false)) return;
    graphics.setColour(brush::colour(palette::kBright));
    graphics.drawRect(getLocalBounds(), layout_.px(2));
}

void StripView::label(juce::Graphics& graphics, const juce::String& text, float x,
                      float centreY) const {
    const float size = px(layout_.measures.unitText);
    const juce::Font font = brush::medium(size);
    const juce::Rectangle<float> box(x, centreY - size * 0.6f,
                                     font.getStringWidthFloat(text) + 2.0f, size * 1.2f);
    graphics.setColour(ground().withAlpha(0.9f)); // a trace may run below
    graphics.fillRect(box.expanded(px(2), 0.0f));
    graphics.setColour(brush::colour(palette::kFaint));
    graphics.setFont(font);
    graphics.drawText(text, box, juce::Justification::centredLeft, false);
}

void StripView::showHelp(bool on) {
    if (context_.help) context_.help(on ? help_ : "");
}

void StripView::mouseEnter(const juce::MouseEvent&) {
    showHelp(true);
}

void StripView::mouseExit(const juce::MouseEvent&) {
    showHelp(false);
}

void StripView::mouseUp(const juce::MouseEvent& event) {
    if (!event.mods.isPopupMenu() && getLocalBounds().contains(event.getPosition())) toggle();
}

bool StripView::keyPressed(const juce::KeyPress& key) {
    if (key != juce::KeyPress::returnKey) return false;
    toggle();
    return true;
}

void StripView::focusGained(FocusChangeType) {
    showHelp(true);
    repaint();
}

void StripView::focusLost(FocusChangeType) {
    showHelp(false);
    repaint();
}

} // namespace zephyra
