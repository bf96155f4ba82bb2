#include "screens/window_services.h"

#include "screens/desktop/window_menu.h"
#include "screens/draw/brush.h"
#include "screens/model/settings_rows.h"
#include "screens/model/top/edit_line.h"

#include <utility>

namespace zephyra {

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
    context_.openSettings = [this] {
        const Box& top = layout_.top;
        context_.openMenu({top.right() - layout_.px(48), top.y, layout_.px(40), top.height},
                          settingsRows(context_));
    };
}

WindowServices::~WindowServices() {
    while (openEdits_ > 0) context_.endEdit(); // a hand was still at something
}

void WindowServices::ask(const char* title, FileChoice::What what,
                         void (WindowModel::*use)(const std::filesystem::path&)) {
    choice_.ask(title, what, [this, use](const auto& file) {
        if (file) (model_.*use)(*file);
    });
}

void WindowServices::frame() {
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
    dialog_.reset();
    if (!shown_) return;
    if (context_.cancelTouches) context_.cancelTouches();
    dialog_ = std::make_unique<AlertDialog>(
        context_, *shown_, questions_.destroys(), [this](std::size_t button, const auto& typed) {
            // The dialog goes with its answer, and not inside its own button.
            juce::MessageManager::callAsync(
                [this, button, typed = typed, alive = juce::Component::SafePointer(&window_)] {
                    if (alive) questions_.answer(button, typed);
                });
        });
    dialog_->layOut(layout_);
    window_.addAndMakeVisible(*dialog_);
}

void WindowServices::layOut(const ScreenLayout& layout) {
    layout_ = layout;
    if (dialog_) dialog_->layOut(layout);
}

// --- Keys ---

bool WindowServices::perform(const juce::KeyPress& key) {
    if (dialog_) return true;
    const auto shortcut =
        shortcutOf({.key = static_cast<char32_t>(juce::CharacterFunctions::toLowerCase(
                        static_cast<juce::juce_wchar>(key.getKeyCode()))),
                    .command = key.getModifiers().isCommandDown(),
                    .shift = key.getModifiers().isShiftDown(),
                    .alt = key.getModifiers().isAltDown()});
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

void WindowServices::load(const juce::StringArray& files) {
    if (dialog_) return; // it is to be answered first
    for (const juce::String& file : files) model_.load(file.toStdString());
}

} // namespace zephyra
