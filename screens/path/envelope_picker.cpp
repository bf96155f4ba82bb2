#include "screens/path/envelope_picker.h"

#include "screens/draw/brush.h"
#include "screens/model/help_texts.h"
#include "screens/path/envelope_tile.h"

#include <algorithm>

namespace zephyra {

using namespace palette;

EnvelopePicker::EnvelopePicker(std::span<const EnvelopeCurve> curves, std::size_t chosen,
                               EnvelopePickerCalls calls)
    : curves_(curves), chosen_(chosen), calls_(std::move(calls)), marked_(chosen) {
    setWantsKeyboardFocus(true);
    setTitle("Grain envelopes");
    setHelpText(brush::text(helpText(HelpId::envelopes)));
    setDescription(brush::text(curves_[marked_ < curves_.size() ? marked_ : 0].name));
}

void EnvelopePicker::place(const ScreenLayout& layout) {
    columns_ = static_cast<int>(curves_.size() + 1) / 2;
    unit_ = layout.scale * layout.measures.nameText / 12.0;
    nameText_ = layout.measures.nameText * layout.scale;
    const int left = layout.columns[1].x, inset = juce::roundToInt(4 * unit_);
    // As wide as names need, and no wider than the path.
    const int column = std::max(layout.columns[1].width, juce::roundToInt(108 * unit_));
    const int width = std::min(columns_ * column + 2 * inset, layout.path.width - left - inset);
    setBounds(left, inset, width, layout.path.height - 2 * inset);
    repaint();
}

juce::Rectangle<int> EnvelopePicker::tile(std::size_t index) const {
    const int inset = juce::roundToInt(4 * unit_);
    const auto inner = getLocalBounds().reduced(inset);
    const int column = static_cast<int>(index) % columns_, row = static_cast<int>(index) / columns_;
    const int x = inner.getX() + inner.getWidth() * column / columns_;
    const int right = inner.getX() + inner.getWidth() * (column + 1) / columns_;
    const int half = inner.getHeight() / 2;
    return {x, inner.getY() + row * half, right - x, half};
}

void EnvelopePicker::paint(juce::Graphics& graphics) {
    const auto unit = static_cast<float>(unit_);
    graphics.setColour(brush::colour(kRaised));
    graphics.fillRoundedRectangle(getLocalBounds().toFloat(), 8 * unit);
    graphics.setColour(brush::colour(kTrack));
    graphics.drawRoundedRectangle(getLocalBounds().toFloat().reduced(0.5f), 8 * unit, 1.0f);
    for (std::size_t i = 0; i < curves_.size(); ++i) {
        auto box = tile(i).toFloat();
        const bool isMarked = i == marked_, isChosen = i == chosen_;
        if (isMarked) {
            graphics.setColour(brush::colour(kPressed));
            graphics.fillRoundedRectangle(box.reduced(unit), 6 * unit);
        }
        const auto name = box.removeFromBottom(static_cast<float>(nameText_) * 1.9f);
        const juce::Colour curve = brush::colour(isMarked || isChosen ? kBright : kSource);
        drawEnvelope(graphics, curves_[i].gains,
                     box.reduced(box.getWidth() * 0.22f, box.getHeight() * 0.17f), 2.0f * unit,
                     curve);
        graphics.setColour(brush::colour(isMarked || isChosen ? kBright : kText));
        graphics.setFont(isChosen ? brush::medium(nameText_) : brush::regular(nameText_));
        graphics.drawText(brush::text(curves_[i].name), name, juce::Justification::centredTop,
                          false);
    }
}

std::optional<std::size_t> EnvelopePicker::tileAt(juce::Point<int> at) const {
    for (std::size_t i = 0; i < curves_.size(); ++i)
        if (tile(i).contains(at)) return i;
    return std::nullopt;
}

void EnvelopePicker::mark(std::size_t index) {
    if (marked_ == index) return;
    repaint(tile(marked_));
    marked_ = index;
    setDescription(brush::text(curves_[index].name));
    repaint(tile(marked_));
}

void EnvelopePicker::mouseMove(const juce::MouseEvent& event) {
    if (const auto index = tileAt(event.getPosition())) mark(*index);
}

void EnvelopePicker::mouseExit(const juce::MouseEvent&) {
    mark(chosen_);
}

void EnvelopePicker::mouseUp(const juce::MouseEvent& event) {
    if (const auto index = tileAt(event.getPosition())) choose(*index);
}

void EnvelopePicker::choose(std::size_t index) {
    calls_.pick(index);
    close();
}

bool EnvelopePicker::keyPressed(const juce::KeyPress& key) {
    const auto count = static_cast<int>(curves_.size());
    const auto go = [&](int by) {
        mark(static_cast<std::size_t>((static_cast<int>(marked_) + by + count) % count));
        return true;
    };
    if (key == juce::KeyPress::rightKey) return go(1);
    if (key == juce::KeyPress::leftKey) return go(-1);
    if (key == juce::KeyPress::downKey) return go(columns_);
    if (key == juce::KeyPress::upKey) return go(-columns_);
    if (key == juce::KeyPress::escapeKey) return close(), true;
    if (key == juce::KeyPress::returnKey || key == juce::KeyPress::spaceKey)
        return choose(marked_), true;
    return false;
}

void EnvelopePicker::focusLost(FocusChangeType) {
    close();
}

/// Later, so that whatever called this ends first.
void EnvelopePicker::close() {
    if (std::exchange(isClosed_, true)) return;
    juce::MessageManager::callAsync([closed = calls_.closed, safe = SafePointer(this)] {
        if (safe) closed();
    });
}

std::unique_ptr<juce::AccessibilityHandler> EnvelopePicker::createAccessibilityHandler() {
    return std::make_unique<juce::AccessibilityHandler>(*this, juce::AccessibilityRole::popupMenu);
}

} // namespace zephyra
