#include "screens/strip/strip_view.h"

#include "screens/desktop/window_blitter.h"
#include "screens/draw/brush.h"
#include "screens/draw/switch_access.h"

namespace zephyra {

namespace {

juce::Colour groundColour() {
    return brush::colour(palette::kStage).darker(0.2f);
}

} // namespace

StripView::StripView(ScreenContext& context, StripModel& model, const std::string& title,
                     const std::string& help)
    : ScreenControl(context, title), model_(model) {
    setOpaque(true);
    setWantsKeyboardFocus(true);
    setMouseClickGrabsKeyboardFocus(false);
    setHelp(help);
}

std::unique_ptr<juce::AccessibilityHandler> StripView::createAccessibilityHandler() {
    return switchAccess(
        *this, [this] { return isOn(); }, [this] { model_.toggle(); });
}

void StripView::layOut(const ScreenLayout& layout, const Box& box) {
    layout_ = layout;
    setBounds(brush::rectangle(box));
    picture_.setSize(box.width, box.height);
    {
        juce::Graphics graphics(picture_.ground());
        graphics.fillAll(groundColour());
        drawGround(graphics);
    }
    picture_.begin(traceColour(), fillColour());
    laidOut();
    if (isOn()) drawTrace(picture_);
    picture_.takeChanges();
    repaint();
}

void StripView::frame(const FrameTime& time) {
    if (!model_.advance(time)) return;
    if (isOn())
        drawTrace(picture_);
    else
        picture_.clear();
    moved_ = picture_.takeChanges();
    if (isOn() != wasOn_) repaint();
    wasOn_ = isOn();
}

void StripView::blit(WindowBlitter& blitter) {
    const bool enters = !moved_.empty() && isOn() && !showsFocus() && blitter.enter(*this);
    for (const Box& box : moved_) {
        if (const auto rows = enters ? blitter.room(box) : std::nullopt)
            paintRows(*rows, box);
        else
            repaint(brush::rectangle(box));
    }
    moved_ = {};
}

void StripView::paintRows(const PixelRows& rows, const Box& box) const {
    picture_.paint(rows, box);
    for (const Written& label : labels_) {
        const auto part = label.box.getIntersection(brush::rectangle(box));
        if (part.isEmpty()) continue;
        const juce::Image::BitmapData letters(label.letters, juce::Image::BitmapData::readOnly);
        for (int y = part.getY(); y < part.getBottom(); ++y)
            for (int x = part.getX(); x < part.getRight(); ++x)
                rows.at(x, y).blend(*reinterpret_cast<const juce::PixelARGB*>(
                    letters.getPixelPointer(x - label.box.getX(), y - label.box.getY())));
    }
}

void StripView::paint(juce::Graphics& graphics) {
    picture_.paint(graphics);
    if (isOn()) {
        for (const Written& label : labels_)
            if (graphics.clipRegionIntersects(label.box))
                graphics.drawImageAt(label.letters, label.box.getX(), label.box.getY());
    } else {
        graphics.setColour(brush::colour(palette::kDim));
        graphics.setFont(brush::medium(px(layout_.measures.unitText)));
        graphics.drawText(getTitle() + " off", getLocalBounds(), juce::Justification::centred,
                          false);
    }
    paintFocus(graphics, layout_.px(2));
}

void StripView::setLabels(const std::vector<Label>& labels) {
    for (const Written& label : labels_) repaint(label.box);
    labels_.clear();
    for (const Label& label : labels) labels_.push_back(written(label));
    for (const Written& label : labels_) repaint(label.box);
}

/// A picture: letters cost far more than the trace below them.
StripView::Written StripView::written(const Label& label) const {
    const float size = px(layout_.measures.unitText);
    const juce::Font font = brush::medium(size);
    const juce::Rectangle<float> box(label.x, label.centreY - size * 0.6f,
                                     font.getStringWidthFloat(label.text) + 2.0f, size * 1.2f);
    const auto ground = box.expanded(px(2), 0.0f);
    Written made;
    made.box = ground.getSmallestIntegerContainer();
    made.letters =
        juce::Image(juce::Image::ARGB, juce::jmax(1, made.box.getWidth()),
                    juce::jmax(1, made.box.getHeight()), true, juce::SoftwareImageType());
    juce::Graphics graphics(made.letters);
    graphics.setOrigin(-made.box.getPosition());
    graphics.setColour(groundColour().withAlpha(0.9f)); // a trace may run below
    graphics.fillRect(ground);
    graphics.setColour(brush::colour(palette::kFaint));
    graphics.setFont(font);
    graphics.drawText(label.text, box, juce::Justification::centredLeft, false);
    return made;
}

void StripView::mouseUp(const juce::MouseEvent& event) {
    if (!event.mods.isPopupMenu() && getLocalBounds().contains(event.getPosition()))
        model_.toggle();
}

bool StripView::takeKey(const juce::KeyPress& key) {
    if (key != juce::KeyPress::returnKey) return false;
    model_.toggle();
    return true;
}

} // namespace zephyra
