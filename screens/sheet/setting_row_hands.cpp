// What mouse, keys and assistive technology do to a row of the settings.
#include "screens/draw/brush.h"
#include "screens/draw/text_field.h"
#include "screens/sheet/setting_row_view.h"

#include <utility>

namespace zephyra {

namespace {

constexpr int kPage = 10; // steps

double nowSeconds() {
    return juce::Time::getMillisecondCounterHiRes() / 1000.0;
}

/// Any kind of row by its text; an amount also by its place on the slider.
class RowValue final : public juce::AccessibilityValueInterface {
public:
    explicit RowValue(SettingRowView& row) : row_(row) {}

    bool isReadOnly() const override { return row_.shown().entry->kind == SettingKind::fact; }
    double getCurrentValue() const override {
        return isAmount() ? double{row_.shown().share} : static_cast<double>(row_.shown().chosen);
    }
    juce::String getCurrentValueAsString() const override {
        return brush::text(row_.shown().value);
    }
    void setValue(double value) override { row_.putValue(value); }
    void setValueAsString(const juce::String& text) override {
        static_cast<void>(row_.typeValue(text.toStdString()));
    }
    AccessibleValueRange getRange() const override {
        if (isAmount()) return {{0.0, 1.0}, 0.02};
        const std::size_t choices = row_.shown().entry->choices.size();
        if (choices == 0) return {}; // a text alone
        return {{0.0, static_cast<double>(choices - 1)}, 1.0};
    }

private:
    bool isAmount() const { return row_.shown().entry->kind == SettingKind::amount; }

    SettingRowView& row_;
};

class RowHandler final : public juce::AccessibilityHandler {
public:
    RowHandler(SettingRowView& row, juce::AccessibilityRole as)
        : AccessibilityHandler(
              row, as,
              juce::AccessibilityActions()
                  .addAction(juce::AccessibilityActionType::press, [&row] { row.press(); })
                  .addAction(juce::AccessibilityActionType::toggle, [&row] { row.press(); }),
              Interfaces{std::make_unique<RowValue>(row)}),
          row_(row) {}

    juce::AccessibleState getCurrentState() const override {
        const auto state = AccessibilityHandler::getCurrentState();
        if (row_.shown().entry->kind != SettingKind::toggle) return state;
        return row_.shown().chosen == 1 ? state.withCheckable().withChecked()
                                        : state.withCheckable();
    }

private:
    SettingRowView& row_;
};

juce::AccessibilityRole roleOf(SettingKind kind) {
    switch (kind) {
    case SettingKind::amount:
        return juce::AccessibilityRole::slider;
    case SettingKind::choice:
        return juce::AccessibilityRole::comboBox;
    case SettingKind::toggle:
        return juce::AccessibilityRole::toggleButton;
    case SettingKind::action:
        return juce::AccessibilityRole::button;
    case SettingKind::fact:
        break;
    }
    return juce::AccessibilityRole::staticText;
}

} // namespace

void SettingRowView::press() {
    if (kind() == SettingKind::amount) return openField();
    model_.press(row_);
    show();
}

bool SettingRowView::typeValue(const std::string& text) {
    const Result<void> typed = model_.type(row_, text);
    if (!typed) calls_.tell(typed.message());
    return typed.ok();
}

void SettingRowView::putValue(double value) {
    model_.put(row_, value, nowSeconds());
    show();
}

/// What a device says may be longer than its row.
std::string SettingRowView::sentence() const {
    const bool isDevice = kind() == SettingKind::action || kind() == SettingKind::fact;
    return isDevice && !shown_.value.empty() ? shown_.value : helpOf(*shown_.entry);
}

// --- Mouse ---

void SettingRowView::slideTo(float x) {
    const auto box = brush::floats(boxes_.control);
    model_.slide(row_, (x - box.getX() - px(5)) / (box.getWidth() - px(10)), nowSeconds());
    show();
}

void SettingRowView::mouseDown(const juce::MouseEvent& event) {
    if (event.mods.isPopupMenu()) return;
    slides_ = kind() == SettingKind::amount && boxes_.control.contains(event.x, event.y);
    if (slides_) slideTo(event.position.x);
}

void SettingRowView::mouseDrag(const juce::MouseEvent& event) {
    if (slides_) slideTo(event.position.x);
}

void SettingRowView::mouseUp(const juce::MouseEvent& event) {
    if (std::exchange(slides_, false) || event.mods.isPopupMenu()) return;
    if (!getLocalBounds().contains(event.getPosition())) return;
    const auto& choices = shown_.entry->choices;
    if (kind() == SettingKind::choice) {
        for (std::size_t i = 0; i < choices.size(); ++i)
            if (choiceBox(boxes_.control, i, choices.size()).contains(event.x, event.y))
                model_.choose(row_, i);
    } else if (kind() == SettingKind::toggle || boxes_.value.contains(event.x, event.y)) {
        press();
    }
    show();
}

void SettingRowView::mouseDoubleClick(const juce::MouseEvent& event) {
    if (boxes_.control.contains(event.x, event.y)) model_.reset(row_);
}

// --- Keys ---

bool SettingRowView::takeKey(const juce::KeyPress& key) {
    using Key = juce::KeyPress;
    const int code = key.getKeyCode();
    const auto step = [&](int by) {
        const bool fine = key.getModifiers().isShiftDown();
        model_.step(row_, by, fine ? Fineness::fine : Fineness::coarse, nowSeconds());
        return show(), true;
    };
    if (code == Key::rightKey) return step(1);
    if (code == Key::leftKey) return step(-1);
    if (code == Key::pageUpKey) return step(kPage);
    if (code == Key::pageDownKey) return step(-kPage);
    if (code == Key::downKey) return calls_.walk(1), true;
    if (code == Key::upKey) return calls_.walk(-1), true;
    if (code == Key::homeKey || code == Key::endKey) {
        model_.stepToEnd(row_, code == Key::endKey, nowSeconds());
        return show(), true;
    }
    if (code == Key::backspaceKey || code == Key::deleteKey) return model_.reset(row_), true;
    if (code == Key::returnKey || code == Key::spaceKey) return press(), true;
    return false;
}

void SettingRowView::focusGained(FocusChangeType cause) {
    ScreenControl::focusGained(cause);
    calls_.reveal(*this);
}

void SettingRowView::openField() {
    field_ = std::make_unique<juce::TextEditor>();
    dressTextField(*field_);
    field_->setFont(brush::medium(px(13)));
    field_->setJustification(juce::Justification::centredRight);
    field_->setPopupMenuEnabled(false);
    field_->setTitle(getTitle());
    field_->setHelpText(brush::text(helpText(HelpId::value)));
    field_->setText(brush::text(shown_.value), juce::dontSendNotification);
    const auto later = [this](bool takes) {
        juce::MessageManager::callAsync([safe = SafePointer(this), takes] {
            if (!safe || !safe->field_) return;
            if (takes && !safe->typeValue(safe->field_->getText().toStdString())) return;
            safe->closeField();
            safe->grabKeyboardFocus();
        });
    };
    field_->onReturnKey = [later] { later(true); };
    field_->onEscapeKey = [later] { later(false); };
    field_->setBounds(brush::rectangle(boxes_.value));
    addAndMakeVisible(*field_);
    field_->grabKeyboardFocus();
    field_->selectAll();
    tell(helpText(HelpId::value));
    repaint();
}

void SettingRowView::closeField() {
    field_.reset();
    repaint();
}

std::unique_ptr<juce::AccessibilityHandler> SettingRowView::createAccessibilityHandler() {
    return std::make_unique<RowHandler>(*this, roleOf(kind()));
}

} // namespace zephyra
