#include "screens/path/value_field.h"

#include "screens/draw/brush.h"
#include "screens/model/help_texts.h"

namespace zephyra {

using namespace palette;

namespace {

constexpr int kTryAgain = 40, kTries = 6; // milliseconds, and how often

} // namespace

ValueField::ValueField(ValueFieldCalls calls, const CellPlace& place)
    : calls_(std::move(calls)), frame_(static_cast<float>(1.5 * place.scale)),
      corner_(static_cast<float>(4 * place.scale)) {
    setOpaque(false);
    const auto unit = place.scale;
    const int width = juce::jmin(place.cell.width - 2, juce::roundToInt(72 * unit));
    const int height = juce::roundToInt(22 * unit);
    setBounds(place.centreX - width / 2, place.centreY - height / 2, width, height);
    setFont(brush::medium(place.numberText * 0.9));
    setJustification(juce::Justification::centred);
    setBorder(juce::BorderSize<int>(0));
    setIndents(2, 0);
    setColour(textColourId, brush::colour(kBright));
    setColour(highlightColourId, brush::colour(kTrack));
    setColour(highlightedTextColourId, brush::colour(kBright));
    setColour(juce::CaretComponent::caretColourId, brush::colour(kAccent));
    setPopupMenuEnabled(false);
    setTitle("Value");
    setHelpText(brush::text(helpText(HelpId::value)));
    onReturnKey = [this] { enter(); };
    onEscapeKey = [this] { leave(); };
}

void ValueField::begin(const std::optional<juce::String>& text, const juce::String& shown) {
    openedAt_ = juce::Time::getMillisecondCounter();
    setText(text.value_or(shown), false);
    if (text)
        moveCaretToEnd();
    else
        selectAll();
    takeKeyboard();
    startTimer(kTryAgain);
}

/// In a host's window the press that opened the field may activate the host's own window a moment
/// later, which takes the keyboard away.
void ValueField::takeKeyboard() {
    if (!hasKeyboardFocus(true)) grabKeyboardFocus();
    if (++tries_ < kTries) return;
    stopTimer();
    onFocusLost = [this] { leave(); };
}

/// What is no value stays, framed in red, to be mended.
void ValueField::enter() {
    if (calls_.enter(getText().toStdString())) return leave();
    isWrong_ = true;
    repaint();
}

void ValueField::paint(juce::Graphics& graphics) {
    graphics.setColour(brush::colour(kGround));
    graphics.fillRoundedRectangle(getLocalBounds().toFloat(), corner_);
}

void ValueField::paintOverChildren(juce::Graphics& graphics) {
    graphics.setColour(brush::colour(isWrong_ ? kAccent : kBright));
    graphics.drawRoundedRectangle(getLocalBounds().toFloat().reduced(frame_ / 2), corner_, frame_);
}

void ValueField::leave() {
    stopTimer();
    onFocusLost = nullptr;
    const auto closed = calls_.closed; // this may be gone behind it
    juce::MessageManager::callAsync([closed, safe = SafePointer<ValueField>(this)] {
        if (safe) closed();
    });
}

void ValueField::mouseDoubleClick(const juce::MouseEvent& event) {
    const auto since = juce::Time::getMillisecondCounter() - openedAt_;
    if (since > static_cast<juce::uint32>(juce::MouseEvent::getDoubleClickTimeout()))
        return TextEditor::mouseDoubleClick(event);
    calls_.reset();
    leave();
}

} // namespace zephyra
