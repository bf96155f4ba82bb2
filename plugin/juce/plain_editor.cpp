#include "plugin/juce/plain_editor.h"

#include "platform/sound/sound_file.h"
#include "plugin/juce/settings_menu.h"

#include <filesystem>
#include <utility>

namespace zephyra {

namespace {

constexpr int kTimesASecond = 10;
constexpr int kLeastWidth = 420, kLeastHeight = 300, kMost = 4000;
constexpr int kRow = 26, kGap = 6;

juce::String text(const std::string& utf8) {
    return juce::String::fromUTF8(utf8.c_str());
}

std::filesystem::path pathOf(const juce::File& file) {
    return file.getFullPathName().toStdString();
}

juce::String soundPatterns() {
    juce::StringArray patterns;
    for (const std::string_view extension : kSoundFileExtensions)
        patterns.add("*." + text(std::string(extension)));
    return patterns.joinIntoString(";");
}

juce::String soundLine(const WindowContents& now) {
    const auto name = [](const std::string& path) {
        return text(std::filesystem::path(path).filename().string());
    };
    if (now.loading) return "Loading " + juce::String(juce::roundToInt(*now.loading * 100)) + " %";
    if (!now.missing.empty()) return "Missing: " + name(now.missing);
    if (now.isLive) return "LIVE: the input";
    if (now.isCaptured) return "What LIVE heard";
    return now.sound.empty() ? juce::String("No sound file") : name(now.sound);
}

void fill(juce::ComboBox& box, const ShownList& list) {
    box.clear(juce::dontSendNotification);
    for (std::size_t i = 0; i < list.rows.size(); ++i)
        box.addItem(text(list.rows[i]), static_cast<int>(i) + 1);
    const int chosen = list.chosen ? static_cast<int>(*list.chosen) + 1 : 0;
    box.setSelectedId(chosen, juce::dontSendNotification);
}

} // namespace

PlainEditor::PlainEditor(ZephyraProcessor& shell)
    : AudioProcessorEditor(shell), shell_(shell), model_(shell.plugin()),
      alert_([this](const auto&... pressed) { model_.answer(pressed...); }), parameters_(shell) {
    addAndMakeVisible(body_);
    for (juce::Component* const child : std::initializer_list<juce::Component*>{
             &load_, &settings_, &sound_, &program_, &bank_, &preset_, &alert_, &parameters_})
        body_.addAndMakeVisible(child);
    body_.addChildComponent(locate_);
    load_.onClick = [this] {
        pick("Load a sound or a bank", soundPatterns() + ";*.zephyra",
             [this](const juce::File& file) { model_.load(pathOf(file)); });
    };
    locate_.onClick = [this] {
        pick("Locate " + text(shown_.missing), soundPatterns(),
             [this](const juce::File& file) { model_.locate(pathOf(file)); });
    };
    settings_.onClick = [this] {
        showSettingsMenu(shell_.plugin(), settings_, shell_.window.zoom,
                         [editor = juce::Component::SafePointer(this)](float factor) {
                             if (editor) editor->setZoom(factor);
                         });
    };
    program_.onChange = [this] { shell_.setCurrentProgram(program_.getSelectedItemIndex()); };
    const auto row = [](const juce::ComboBox& box) {
        return static_cast<std::size_t>(box.getSelectedItemIndex());
    };
    bank_.onChange = [this, row] { model_.chooseBank(row(bank_)); };
    preset_.onChange = [this, row] { model_.choosePreset(row(preset_)); };
    program_.setTooltip("Programs: the factory's presets");
    program_.setTextWhenNothingSelected("Program");
    bank_.setTextWhenNothingSelected("Bank");
    preset_.setTextWhenNothingSelected("Preset");
    preset_.setTextWhenNoChoicesAvailable("Choose a bank first");
    for (int i = 0; i < shell_.getNumPrograms(); ++i)
        program_.addItem(shell_.getProgramName(i), i + 1);
    showProgram();
    show(model_.contents());
    const int width = shell_.window.width, height = shell_.window.height; // resized() writes them
    setResizable(true, false);
    setResizeLimits(kLeastWidth, kLeastHeight, kMost, kMost);
    setSize(width, height);
    startTimerHz(kTimesASecond);
}

PlainEditor::~PlainEditor() {
    stopTimer();
}

void PlainEditor::showProgram() {
    if (program_.isPopupActive()) return;
    const auto chosen = shell_.plugin().chosenProgram();
    program_.setSelectedId(chosen ? static_cast<int>(*chosen) + 1 : 0, juce::dontSendNotification);
}

void PlainEditor::timerCallback() {
    parameters_.refresh();
    for (ChoiceBox* const box : {&program_, &bank_, &preset_}) box->settle();
    showProgram();
    const WindowContents now = model_.contents();
    if (now != shown_) show(now);
    if (now.asksForFile && !chooser_) pickWhatIsAskedFor();
}

void PlainEditor::show(const WindowContents& now) {
    const WindowContents before = std::exchange(shown_, now);
    sound_.setText(soundLine(now), juce::dontSendNotification);
    sound_.setTooltip(text(now.missing.empty() ? now.sound : now.missing));
    locate_.setVisible(!now.missing.empty());
    if (now.banks != before.banks) fill(bank_, now.banks);
    if (now.presets != before.presets) fill(preset_, now.presets);
    if (now.alert != before.alert) alert_.show(now.alert);
    layOut();
}

void PlainEditor::pick(const juce::String& title, const juce::String& patterns, Picked picked) {
    chooser_ = std::make_unique<juce::FileChooser>(title, juce::File(), patterns);
    using Flags = juce::FileBrowserComponent::FileChooserFlags;
    chooser_->launchAsync(Flags::openMode | Flags::canSelectFiles,
                          [this, picked = std::move(picked)](const juce::FileChooser& chooser) {
                              const juce::File file = chooser.getResult();
                              // The chooser goes after its own call.
                              juce::MessageManager::callAsync(
                                  [editor = juce::Component::SafePointer(this)] {
                                      if (editor) editor->chooser_.reset();
                                  });
                              picked(file);
                          });
}

void PlainEditor::pickWhatIsAskedFor() {
    pick("Locate the sound", soundPatterns(), [this](const juce::File& file) {
        if (file == juce::File())
            model_.dismissFile();
        else
            model_.pickFile(pathOf(file));
    });
}

void PlainEditor::setZoom(float factor) {
    const float change = factor / std::exchange(shell_.window.zoom, factor);
    setSize(juce::roundToInt(static_cast<float>(getWidth()) * change),
            juce::roundToInt(static_cast<float>(getHeight()) * change));
    resized();
}

void PlainEditor::resized() {
    shell_.window.width = getWidth();
    shell_.window.height = getHeight();
    const float zoom = shell_.window.zoom;
    body_.setTransform(juce::AffineTransform::scale(zoom));
    body_.setBounds(0, 0, juce::roundToInt(static_cast<float>(getWidth()) / zoom),
                    juce::roundToInt(static_cast<float>(getHeight()) / zoom));
    layOut();
}

void PlainEditor::layOut() {
    auto area = body_.getLocalBounds();
    alert_.setBounds(area.removeFromTop(alert_.wantedHeight()));
    area = area.reduced(kGap);
    auto row = area.removeFromTop(kRow);
    load_.setBounds(row.removeFromLeft(80));
    row.removeFromLeft(kGap);
    settings_.setBounds(row.removeFromRight(80));
    if (locate_.isVisible()) {
        locate_.setBounds(row.removeFromLeft(80));
        row.removeFromLeft(kGap);
    }
    sound_.setBounds(row);
    area.removeFromTop(kGap);
    row = area.removeFromTop(kRow);
    const int third = (row.getWidth() - 2 * kGap) / 3;
    program_.setBounds(row.removeFromLeft(third));
    row.removeFromLeft(kGap);
    bank_.setBounds(row.removeFromLeft(third));
    row.removeFromLeft(kGap);
    preset_.setBounds(row);
    area.removeFromTop(kGap);
    parameters_.setBounds(area);
}

void PlainEditor::paint(juce::Graphics& graphics) {
    graphics.fillAll(getLookAndFeel().findColour(juce::ResizableWindow::backgroundColourId));
}

} // namespace zephyra
