#include "screens/window_services.h"

#include "screens/desktop/window_menu.h"
#include "screens/draw/brush.h"
#include "screens/model/settings/setting_table.h"
#include "screens/model/top/edit_line.h"

#include <utility>

namespace zephyra {

namespace {

/// A line of text/uri-list, of which JUCE has taken "file://" and the escapes: a path, a computer's
/// name and a path, or a comment.
juce::String fileOf(const juce::String& line) {
    if (line.startsWithChar('#')) return {};
    for (const juce::String& here :
         {juce::String("localhost"), juce::SystemStats::getComputerName()})
        if (line.startsWith(here + "/")) return line.substring(here.length());
    return line;
}

} // namespace

WindowServices::WindowServices(juce::Component& window, ScreenContext& context)
    : window_(window), context_(context), model_(context.source.plugin()),
      questions_(context.source) {
    ScreenSource& source = context.source;
    context_.openMenu = [this](const Box& box, std::vector<MenuRow> rows) {
        showWindowMenu(window_, layout_.scale, box, std::move(rows));
    };
    context_.beginEdit = [this, &source](const std::string& name) {
        ++openEdits_;
        source.asMain([&name](AudioUnitViewController& view) { view.edits.beginEdit(name); });
    };
    context_.endEdit = [this, &source] {
        if (openEdits_ == 0) return;
        --openEdits_;
        source.asMain([](AudioUnitViewController& view) { view.edits.endEdit(); });
    };
    context_.loadFile = [this] {
        ask("Load a sound or a bank", FileChoice::What::soundsAndBanks, &WindowModel::load);
    };
    context_.locateSample = [this] {
        ask("Locate the sound", FileChoice::What::sounds, &WindowModel::locate);
    };
    context_.openSettings = [this] { openSettings(); };
    handKnobStyle(context_);
}

WindowServices::~WindowServices() {
    while (openEdits_ > 0) context_.endEdit(); // a hand was still at something
    settings_.reset(); // what goes gives its keyboard to the window, and that to what is open
    dialog_.reset();
}

void WindowServices::ask(const char* title, FileChoice::What what,
                         void (WindowModel::*use)(const std::filesystem::path&)) {
    choice_.ask(title, what, [this, use](const auto& file) {
        if (file) (model_.*use)(*file);
    });
}

void WindowServices::frame(double now) {
    if (settings_) settings_->frame(now);
    model_.followImport();
    if (questions_.alert() != shown_) showAlert();
    if (!questions_.asksForFile() || choice_.isOpen()) return;
    choice_.ask("Locate the sound", FileChoice::What::sounds, [this](const auto& file) {
        if (file)
            model_.pickFile(*file);
        else
            model_.dismissFile();
    });
}

void WindowServices::showAlert() {
    shown_ = questions_.alert();
    if (!dialog_) before_ = juce::Component::getCurrentlyFocusedComponent();
    const bool hadKeyboard = dialog_ && dialog_->hasKeyboardFocus(true);
    dialog_.reset();
    if (!shown_) {
        if (hadKeyboard && before_ && window_.isParentOf(before_))
            return before_->grabKeyboardFocus();
        return takeKeyboard();
    }
    if (context_.cancelTouches) context_.cancelTouches();
    dialog_ = std::make_unique<AlertDialog>(
        context_, *shown_, questions_.destroys(),
        [this, asked = *shown_](std::size_t button, const auto& typed) {
            // The dialog goes with its answer, and not inside its own button. Another alert may
            // wait by then.
            juce::MessageManager::callAsync([this, asked, button, typed = typed,
                                             alive = juce::Component::SafePointer(&window_)] {
                if (alive) model_.answer(asked, button, typed);
            });
        });
    dialog_->layOut(layout_);
    window_.addAndMakeVisible(*dialog_);
}

void WindowServices::openSettings() {
    if (settings_ || dialog_) return;
    if (context_.cancelTouches) context_.cancelTouches();
    settings_ = std::make_unique<SettingsSheet>(context_, [this] { settings_.reset(); });
    settings_->layOut(layout_);
    window_.addAndMakeVisible(*settings_);
}

void WindowServices::layOut(const ScreenLayout& layout) {
    layout_ = layout;
    if (settings_) settings_->layOut(layout);
    if (dialog_) dialog_->layOut(layout);
}

// --- Keys ---

void WindowServices::takeKeyboard() {
    if (dialog_)
        dialog_->takeKeyboard();
    else if (settings_)
        settings_->takeKeyboard();
}

bool WindowServices::perform(const juce::KeyPress& key) {
    const auto* const menu = juce::Component::getCurrentlyModalComponent();
    if (dialog_ || (menu && window_.isParentOf(menu))) return true; // to be answered first
    const auto shortcut =
        shortcutOf({.key = static_cast<char32_t>(juce::CharacterFunctions::toLowerCase(
                        static_cast<juce::juce_wchar>(key.getKeyCode()))),
                    .command = key.getModifiers().isCommandDown(),
                    .shift = key.getModifiers().isShiftDown(),
                    .alt = key.getModifiers().isAltDown()});
    if (settings_ && shortcut != Shortcut::zoomIn && shortcut != Shortcut::zoomOut) {
        settings_->takeKeyboard();
        return true;
    }
    if (!shortcut) return false;
    perform(*shortcut);
    return true;
}

void WindowServices::perform(Shortcut shortcut) {
    switch (shortcut) {
    case Shortcut::playStop:
        return press(ControlId::playStop);
    case Shortcut::freeze:
        return press(ControlId::freeze);
    case Shortcut::live:
        return press(ControlId::live);
    case Shortcut::rewind:
        context_.source.asMain([](AudioUnitViewController& view) {
            view._GRANULATOR_STREAM.controls._rewind.sendActionsForControlEvents(
                control_event::touchUpInside);
        });
        return;
    case Shortcut::undo:
        return undo(context_);
    case Shortcut::redo:
        return redo(context_);
    case Shortcut::load:
        return context_.loadFile();
    case Shortcut::zoomIn:
        return zoom(true);
    case Shortcut::zoomOut:
        return zoom(false);
    case Shortcut::settings:
        return context_.openSettings();
    }
}

/// As a hand does, so that the host hears of it.
void WindowServices::press(ControlId id) {
    const ScreenEdit edit(context_, controlRange(id).name); // none where nothing is kept: Play Stop
    context_.source.asMain([id](AudioUnitViewController& view) {
        Control* const control = view.control(id);
        if (!control || !control->userInteractionEnabled) return;
        control->sendActionsForControlEvents(control_event::touchDown);
        control->sendActionsForControlEvents(control_event::touchUpInside);
    });
}

void WindowServices::zoom(bool larger) {
    context_.settings.zoom = nextZoom(context_.settings.zoom, larger);
    context_.settingsChanged();
}

void WindowServices::load(const juce::StringArray& dropped) {
    if (dialog_) return; // it is to be answered first
    for (const juce::String& line : dropped)
        if (const juce::String file = fileOf(line); file.isNotEmpty())
            model_.load(file.toStdString());
}

} // namespace zephyra
