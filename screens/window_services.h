// WindowServices: what the areas of a window ask for that is the window's: menus, files, settings,
// edits, keys, and the system's questions.
#pragma once

#include "screens/desktop/file_choice.h"
#include "screens/model/screen_settings_store.h"
#include "screens/model/shortcuts.h"
#include "screens/model/system_questions.h"
#include "screens/sheet/alert_dialog.h"
#include "screens/sheet/settings_sheet.h"

#include <memory>
#include <string>

namespace zephyra {

/// Fills the functions of a context for the window that owns it. Message thread.
class WindowServices {
public:
    /// Both outlive it.
    WindowServices(juce::Component& window, ScreenContext& context);
    ~WindowServices();
    WindowServices(const WindowServices&) = delete;
    WindowServices& operator=(const WindowServices&) = delete;

    /// Shows the alert that waits, or takes it away; asks for the file that is asked for.
    void frame(double now);
    void layOut(const ScreenLayout& layout);
    /// Gives the keyboard to the sheet or the dialog that is open.
    void takeKeyboard();
    /// False for a key that is the host's.
    bool perform(const juce::KeyPress& key);
    /// Sounds and banks that were dropped.
    void load(const juce::StringArray& dropped);

private:
    void perform(Shortcut shortcut);
    void press(ControlId id);
    void zoom(bool larger);
    void ask(const char* title, FileChoice::What what,
             void (WindowModel::*use)(const std::filesystem::path&));
    void showAlert();
    void openSettings();

    juce::Component& window_;
    ScreenContext& context_;
    WindowModel model_;
    SystemQuestions questions_;
    FileChoice choice_;
    std::optional<ShownAlert> shown_;
    std::unique_ptr<SettingsSheet> settings_;
    std::unique_ptr<AlertDialog> dialog_;
    juce::Component::SafePointer<juce::Component> before_; // had the keyboard before the dialog
    ScreenLayout layout_;
    int openEdits_ = 0; // that hands of this window began
};

} // namespace zephyra
