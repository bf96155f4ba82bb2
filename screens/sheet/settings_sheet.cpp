#include "screens/sheet/settings_sheet.h"

#include "screens/draw/brush.h"
#include "screens/sheet/panel.h"

#include <algorithm>
#include <utility>

namespace zephyra {

using namespace palette;

namespace {

constexpr double kTitleText = 18.0, kGroupText = 13.0, kHelpText = 12.0, kBar = 8.0; // units

} // namespace

SettingsSheet::SettingsSheet(ScreenContext& context, std::function<void()> closed)
    : context_(context), model_(context), closed_(std::move(closed)),
      before_(juce::Component::getCurrentlyFocusedComponent()),
      close_(context, "Close", helpText(HelpId::closeSettings)) {
    setTitle("Settings");
    setDescription("Settings of this instance and of all windows");
    setFocusContainerType(FocusContainerType::keyboardFocusContainer);
    tell({});
    for (std::size_t i = 0; i < model_.rows().size(); ++i) {
        SettingRowCalls calls;
        calls.tell = [this](const std::string& sentence) { tell(sentence); };
        calls.walk = [this](int by) { walk(by); };
        calls.reveal = [this](juce::Component& row) { reveal(row); };
        rows_.push_back(std::make_unique<SettingRowView>(context, model_, i, std::move(calls)));
        content_.addAndMakeVisible(*rows_.back());
    }
    list_.setViewedComponent(&content_, false);
    list_.setScrollBarsShown(true, false);
    list_.setWantsKeyboardFocus(false);
    auto& bar = list_.getVerticalScrollBar();
    bar.setColour(juce::ScrollBar::thumbColourId, brush::colour(kFaint));
    addAndMakeVisible(list_);
    close_.setFace({.isBare = true});
    close_.setSurface(kStage);
    close_.pressed = [this] { close(); };
    addAndMakeVisible(close_);
}

SettingsSheet::~SettingsSheet() = default;

void SettingsSheet::close() {
    juce::MessageManager::callAsync([safe = SafePointer(this)] {
        if (!safe) return;
        if (safe->before_ && safe->before_->isShowing()) safe->before_->grabKeyboardFocus();
        safe->closed_();
    });
}

void SettingsSheet::layOut(const ScreenLayout& layout) {
    boxes_ = sheetBoxes(layout, model_.rows());
    scale_ = layout.scale;
    setBounds(brush::rectangle(layout.window));
    close_.place(boxes_.close, scale_);
    close_.setIcon(Icon::close);
    content_.boxes = &boxes_;
    content_.scale = scale_;
    content_.setBounds(brush::rectangle(boxes_.content));
    for (std::size_t i = 0; i < rows_.size(); ++i) rows_[i]->place(boxes_.rows[i], scale_);
    list_.setScrollBarThickness(layout.px(kBar));
    list_.setBounds(brush::rectangle(boxes_.list));
    list_.setSingleStepSizes(layout.px(16), layout.px(16));
    if (last_ < rows_.size()) reveal(*rows_[last_]);
    repaint();
}

void SettingsSheet::frame(double now) {
    model_.frame(now);
    for (const auto& row : rows_) row->show();
}

void SettingsSheet::parentHierarchyChanged() {
    if (isShowing()) takeKeyboard();
}

void SettingsSheet::takeKeyboard() {
    if (last_ < rows_.size())
        rows_[last_]->grabKeyboardFocus();
    else
        close_.grabKeyboardFocus();
}

void SettingsSheet::tell(const std::string& sentence) {
    const std::string shown = sentence.empty() ? helpText(HelpId::settingsKeys) : sentence;
    if (std::exchange(help_, shown) != shown) repaint(brush::rectangle(boxes_.help));
}

/// Round the rows and the close button.
void SettingsSheet::walk(int by) {
    const auto count = static_cast<int>(rows_.size()) + 1;
    int at = static_cast<int>(last_);
    for (int i = 0; i < count - 1; ++i)
        if (rows_[static_cast<std::size_t>(i)]->hasKeyboardFocus(true)) at = i;
    if (close_.hasKeyboardFocus(true)) at = count - 1;
    last_ = static_cast<std::size_t>((at + by + count) % count);
    if (last_ < rows_.size()) reveal(*rows_[last_]);
    takeKeyboard();
}

void SettingsSheet::reveal(const juce::Component& row) {
    for (std::size_t i = 0; i < rows_.size(); ++i)
        if (rows_[i].get() == &row) last_ = i;
    // The first row with the title above it.
    const int top = last_ == 0 ? 0 : row.getY(), seen = list_.getViewHeight();
    const int y = list_.getViewPositionY();
    if (top < y) list_.setViewPosition(0, top);
    if (row.getBottom() > y + seen) list_.setViewPosition(0, row.getBottom() - seen);
}

bool SettingsSheet::keyPressed(const juce::KeyPress& key) {
    using Key = juce::KeyPress;
    if (key.getModifiers().isCommandDown()) return false; // the window's, which knows of the sheet
    context_.isByKeys = true;
    if (key.getKeyCode() == Key::tabKey) walk(key.getModifiers().isShiftDown() ? -1 : 1);
    if (key == Key::downKey) walk(1);
    if (key == Key::upKey) walk(-1);
    if (key == Key::escapeKey) close();
    if ((key == Key::spaceKey || key == Key::returnKey) && close_.hasKeyboardFocus(true)) close();
    return true; // what is below hears nothing
}

void SettingsSheet::mouseUp(const juce::MouseEvent& event) {
    if (!boxes_.panel.contains(event.x, event.y)) close();
}

void SettingsSheet::paint(juce::Graphics& graphics) {
    drawPanel(graphics, brush::rectangle(boxes_.panel), scale_);
    graphics.setColour(brush::colour(kLine));
    const int line = juce::jmax(1, juce::roundToInt(scale_));
    graphics.fillRect(boxes_.panel.x, boxes_.list.bottom(), boxes_.panel.width, line);
    graphics.setColour(brush::colour(kBright));
    graphics.setFont(brush::medium(kTitleText * scale_));
    graphics.drawText("Settings", brush::rectangle(boxes_.title), juce::Justification::centredLeft,
                      false);
    graphics.setColour(brush::colour(kFaint));
    graphics.setFont(brush::regular(kHelpText * scale_));
    graphics.drawFittedText(brush::text(help_), brush::rectangle(boxes_.help),
                            juce::Justification::centredLeft, 2, 1.0f);
}

void SettingsSheet::Content::paint(juce::Graphics& graphics) {
    if (!boxes) return;
    for (std::size_t i = 0; i < kSettingGroups; ++i) {
        if (!boxes->groups[i]) continue;
        const SettingGroupTitle& title = titleOf(static_cast<SettingGroup>(i));
        const auto inset = static_cast<int>(8.0 * scale);
        auto box = brush::rectangle(*boxes->groups[i]).withTrimmedLeft(inset);
        box.setTop(box.getY() + static_cast<int>(8.0 * scale));
        const juce::Font font = brush::medium(kGroupText * scale);
        graphics.setFont(font);
        graphics.setColour(brush::colour(kBright));
        graphics.drawText(title.title, box, juce::Justification::centredLeft, false);
        box.setLeft(box.getX() + font.getStringWidth(title.title) + inset);
        graphics.setFont(brush::regular(kHelpText * scale));
        graphics.setColour(brush::colour(kFaint));
        graphics.drawText(title.kept, box, juce::Justification::centredLeft, false);
    }
}

} // namespace zephyra
