#include "plugin/juce/standalone/standalone_view.h"

#include <utility>

namespace zephyra {

namespace {

constexpr int kRow = 28, kGap = 4, kKeys = 64; // pixels
constexpr int kWidth = 760, kHeight = 720;

juce::String shown(const std::string& text) {
    return juce::String::fromUTF8(text.c_str());
}

} // namespace

StandaloneView::StandaloneView(ZephyraProcessor& processor, StandaloneAudio& audio)
    : processor_(processor), audio_(audio), editor_(processor.createEditorIfNeeded()) {
    QuickPresetsManager& presets = processor_.plugin().system().view.presets;
    RunLoop& main = processor_.plugin().system().instance.runLoop;
    addButton(play_, [this] { toggle(ControlId::playStop); });
    addButton(live_, [this] { toggle(ControlId::live); });
    addButton(previous_, [&main, &presets] {
        const RunLoop::Scope scope(main);
        presets.previousSnap();
    });
    addButton(next_, [&main, &presets] {
        const RunLoop::Scope scope(main);
        presets.nextSnap();
    });
    addButton(devices_, [this] { audio_.showSettings(*this); });
    addButton(told_, [this] { onTold(); });
    previous_.setTooltip("The preset before");
    next_.setTooltip("The next preset");
    for (juce::Label* const label : {&notice_, &status_}) addAndMakeVisible(*label);
    notice_.setColour(juce::Label::textColourId, juce::Colours::orange);
    addAndMakeVisible(*editor_);
    addAndMakeVisible(keyboard_);
    keyboard_.setLowestVisibleKey(36);
    keys_.addListener(this);
    setWantsKeyboardFocus(true);
    setSize(kWidth, kHeight);
}

StandaloneView::~StandaloneView() {
    keys_.removeListener(this);
}

void StandaloneView::addButton(juce::TextButton& button, std::function<void()> clicked) {
    button.onClick = std::move(clicked);
    button.setWantsKeyboardFocus(false); // the space bar plays
    button.setColour(juce::TextButton::buttonOnColourId, juce::Colours::darkorange);
    addAndMakeVisible(button);
}

// --- What is played ---

bool StandaloneView::isLit(ControlId id) const {
    return processor_.plugin().parameter(static_cast<AUParameterAddress>(id)) > 0.5f;
}

void StandaloneView::toggle(ControlId id) {
    processor_.plugin().setParameter(static_cast<AUParameterAddress>(id), isLit(id) ? 0.0f : 1.0f);
}

void StandaloneView::refresh(const LiveNotice& notice) {
    play_.setToggleState(isLit(ControlId::playStop), juce::dontSendNotification);
    play_.setButtonText(isLit(ControlId::playStop) ? "Stop" : "Play");
    live_.setToggleState(isLit(ControlId::live), juce::dontSendNotification);
    notice_.setText(shown(notice.line), juce::dontSendNotification);
    if (told_.isVisible() != notice.asks) {
        told_.setVisible(notice.asks);
        resized();
    }
    const auto& midi = audio_.midi().names();
    status_.setText(shown(audio_.status()) + (midi.isEmpty() ? "" : "  |  MIDI: " + midi) +
                        (said_.empty() ? "" : "  |  " + shown(said_)),
                    juce::dontSendNotification);
}

void StandaloneView::say(const std::string& line) {
    said_ = line;
}

void StandaloneView::filesDropped(const juce::StringArray& files, int, int) {
    for (const auto& file : files) onOpen(file.toStdString());
}

// --- Keys ---

bool StandaloneView::keyPressed(const juce::KeyPress& key) {
    if (key != juce::KeyPress::spaceKey) return false;
    toggle(ControlId::playStop);
    return true;
}

void StandaloneView::handleNoteOn(juce::MidiKeyboardState*, int channel, int note, float velocity) {
    audio_.player().pushMidi(juce::MidiMessage::noteOn(channel, note, velocity));
}

void StandaloneView::handleNoteOff(juce::MidiKeyboardState*, int channel, int note, float) {
    audio_.player().pushMidi(juce::MidiMessage::noteOff(channel, note));
}

// --- Looks ---

void StandaloneView::paint(juce::Graphics& graphics) {
    graphics.fillAll(getLookAndFeel().findColour(juce::ResizableWindow::backgroundColourId));
}

void StandaloneView::resized() {
    auto area = getLocalBounds().reduced(kGap);
    auto top = area.removeFromTop(kRow);
    for (auto* const button : {&play_, &live_})
        button->setBounds(top.removeFromLeft(72).withTrimmedRight(kGap));
    for (auto* const button : {&previous_, &next_})
        button->setBounds(top.removeFromLeft(36).withTrimmedRight(kGap));
    devices_.setBounds(top.removeFromRight(84));
    status_.setBounds(area.removeFromBottom(kRow));
    auto notice = area.removeFromBottom(kRow);
    if (told_.isVisible()) told_.setBounds(notice.removeFromRight(84));
    notice_.setBounds(notice);
    keyboard_.setBounds(area.removeFromBottom(kKeys));
    editor_->setBounds(area.reduced(0, kGap));
}

} // namespace zephyra
