// SettingsSheet: the settings over the window.
#pragma once

#include "screens/draw/screen_button.h"
#include "screens/model/settings/sheet_boxes.h"
#include "screens/sheet/setting_row_view.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace zephyra {

/// Covers the window it is put into, which goes on below. Escape, the cross and a click beside the
/// panel close it; Tab and the arrows up and down go round its rows. What has the keyboard when it
/// is made gets it back when it is closed. Message thread.
class SettingsSheet final : public juce::Component {
public:
    /// closed may delete it, and is called later than what closes it. context outlives it.
    SettingsSheet(ScreenContext& context, std::function<void()> closed);
    ~SettingsSheet() override;

    void layOut(const ScreenLayout& layout);
    void frame(double now);
    /// To the row that had it last, at first the first one.
    void takeKeyboard();

    void paint(juce::Graphics& graphics) override;
    void mouseUp(const juce::MouseEvent& event) override;
    bool keyPressed(const juce::KeyPress& key) override;
    void parentHierarchyChanged() override;

private:
    /// The rows and the groups' titles, which are scrolled.
    struct Content final : juce::Component {
        void paint(juce::Graphics& graphics) override;
        const SheetBoxes* boxes = nullptr;
        double scale = 1.0;
    };

    void close();
    void tell(const std::string& sentence);
    void walk(int by);
    void reveal(const juce::Component& row);

    ScreenContext& context_;
    SettingsModel model_;
    const std::function<void()> closed_;
    SafePointer<juce::Component> before_; // had the keyboard
    SheetBoxes boxes_;
    double scale_ = 1.0;
    std::string help_;
    std::size_t last_ = 0; // the row that had the keyboard, the close button behind the last
    ScreenButton close_;
    Content content_;
    juce::Viewport list_;
    std::vector<std::unique_ptr<SettingRowView>> rows_;
};

} // namespace zephyra
