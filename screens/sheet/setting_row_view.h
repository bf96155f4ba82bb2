// SettingRowView: a row of the sheet of settings: its name, its value and its control.
#pragma once

#include "screens/draw/help_tip.h"
#include "screens/draw/screen_control.h"
#include "screens/model/settings/settings_model.h"
#include "screens/model/settings/sheet_boxes.h"

#include <functional>
#include <memory>
#include <string>

namespace zephyra {

/// What a row asks of its sheet.
struct SettingRowCalls {
    std::function<void(const std::string& sentence)> tell; ///< help, or what is wrong
    std::function<void(int by)> walk;                      ///< to the row so many further
    std::function<void(juce::Component& row)> reveal;      ///< it has the keyboard: scroll to it
};

/// Left and right change it, Home and End go to its ends, Space and Enter press it; a click acts
/// on what is drawn. Message thread.
class SettingRowView final : public ScreenControl, public TellsItself {
public:
    /// context and model outlive it; row: its place there.
    SettingRowView(ScreenContext& context, SettingsModel& model, std::size_t row,
                   SettingRowCalls calls);
    ~SettingRowView() override;

    void place(const Box& box, double scale);
    /// A frame: repaints what differs.
    void show();
    const SettingRow& shown() const noexcept { return shown_; }
    /// As assistive technology sets it; what is no value is told, and changes nothing.
    bool typeValue(const std::string& text);
    /// The same by number, see SettingsModel::put.
    void putValue(double value);
    void press();

    void paint(juce::Graphics& graphics) override;
    void mouseDown(const juce::MouseEvent& event) override;
    void mouseDrag(const juce::MouseEvent& event) override;
    void mouseUp(const juce::MouseEvent& event) override;
    void mouseDoubleClick(const juce::MouseEvent& event) override;
    void focusGained(FocusChangeType cause) override;
    std::unique_ptr<juce::AccessibilityHandler> createAccessibilityHandler() override;

private:
    float px(double units) const { return static_cast<float>(units * scale_); }
    SettingKind kind() const { return shown_.entry->kind; }
    void paintChoices(juce::Graphics& graphics) const;
    void paintSlider(juce::Graphics& graphics) const;
    void paintButton(juce::Graphics& graphics) const;
    std::string sentence() const override;
    void tell(const std::string& sentence) override { calls_.tell(sentence); }
    bool takeKey(const juce::KeyPress& key) override;
    void slideTo(float x);
    void openField();
    void closeField();

    SettingsModel& model_;
    const std::size_t row_;
    const SettingRowCalls calls_;
    SettingRow shown_;
    SettingRowBoxes boxes_;
    double scale_ = 1.0;
    bool slides_ = false;
    std::unique_ptr<juce::TextEditor> field_;
};

} // namespace zephyra
