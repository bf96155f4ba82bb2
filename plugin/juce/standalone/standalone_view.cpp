#include "plugin/juce/standalone/standalone_view.h"

#include "plugin/juce/screen_editor.h"
#include "screens/draw/brush.h"
#include "screens/model/help_texts.h"

#include <utility>

namespace zephyra {

namespace {

constexpr int kRow = 28, kGap = 4, kKeys = 64, kKey = 16, kButton = 84, kAudio = 112, kText = 12,
              kOctave = 11;                  // units
constexpr int kWhiteKeys = 75, kMost = 8192; // pixels

juce::String shown(const std::string& text) {
    return brush::drawn(text);
}

} // namespace

StandaloneView::StandaloneView(ZephyraProcessor& processor, StandaloneAudio& audio)
    : audio_(audio), editor_(processor.createEditorIfNeeded()) {
    addButton(devices_, [this] { audio_.showSettings(*this); });
    addButton(told_, [this] { onTold(); });
    devices_.addShortcut({'d', juce::ModifierKeys::commandModifier, 0}); // Tab stays in the screen
    told_.addShortcut(juce::KeyPress(juce::KeyPress::escapeKey));
    for (juce::Label* const label : {&notice_, &status_}) addAndMakeVisible(*label);
    status_.setColour(juce::Label::textColourId, brush::colour(palette::kFaint));
    notice_.setColour(juce::Label::textColourId, brush::colour(palette::kAccent));
    for (juce::Label* const label : {&notice_, &status_}) label->setMinimumHorizontalScale(1.0f);
    addAndMakeVisible(*editor_);
    addAndMakeVisible(keyboard_);
    keyboard_.setLowestVisibleKey(36);
    keyboard_.setTitle("Keys");
    keyboard_.setHelpText(brush::text(helpText(HelpId::keyboard)));
    devices_.setHelpText(brush::text(helpText(HelpId::audioButton)));
    keyboard_.setColour(Keys::whiteNoteColourId, brush::colour(palette::kText));
    keyboard_.setColour(Keys::blackNoteColourId, brush::colour(palette::kStage));
    keyboard_.setColour(Keys::keySeparatorLineColourId, brush::colour(palette::kLine));
    keyboard_.setColour(Keys::shadowColourId, juce::Colours::transparentBlack);
    keyboard_.setColour(Keys::textLabelColourId, brush::colour(palette::kInk));
    keyboard_.setColour(Keys::mouseOverKeyOverlayColourId, brush::colour(palette::kFaint, 0.5f));
    keyboard_.setColour(Keys::keyDownOverlayColourId, brush::colour(palette::kAccent));
    keys_.addListener(this);
    keyboard_.setWantsKeyboardFocus(false); // letters are the screen's
    childBoundsChanged(editor_.get());
}

void StandaloneView::Keys::drawWhiteNote(int note, juce::Graphics& graphics,
                                         juce::Rectangle<float> key, bool isDown, bool isOver,
                                         juce::Colour line, juce::Colour text) {
    MidiKeyboardComponent::drawWhiteNote(note, graphics, key, isDown, isOver, line, text);
    if (note % 12 != 0) return;
    graphics.setColour(text);
    graphics.setFont(brush::regular(letters));
    const auto below = key.withTrimmedBottom(letters / 4.0f).withTrimmedLeft(letters / 5.0f);
    graphics.drawText(juce::MidiMessage::getMidiNoteName(note, true, true, getOctaveForMiddleC()),
                      below.withWidth(2.0f * key.getWidth()), // "C-2" is wider than a key
                      juce::Justification::bottomLeft, false);
}

StandaloneView::~StandaloneView() {
    keys_.removeListener(this);
}

void StandaloneView::addButton(juce::TextButton& button, std::function<void()> clicked) {
    button.onClick = std::move(clicked);
    button.setWantsKeyboardFocus(false); // the space bar plays
    button.setColour(juce::TextButton::buttonColourId, brush::colour(palette::kRaised));
    button.setColour(juce::TextButton::textColourOffId, brush::colour(palette::kText));
    button.setColour(juce::ComboBox::outlineColourId, brush::colour(palette::kLine));
    addAndMakeVisible(button);
}

void StandaloneView::refresh(const LiveNotice& notice) {
    takeKeyboard();
    limitWindow();
    if (auto* const editor = dynamic_cast<ScreenEditor*>(editor_.get()); editor && editor->screen())
        offerDevices(editor->screen()->context());
    if (const juce::String line = shown(notice.line);
        line != notice_.getText() || notice.asks != told_.isVisible()) {
        notice_.setText(line, juce::dontSendNotification);
        told_.setVisible(notice.asks);
        resized();
    }
    const auto& midi = audio_.midi().names();
    status_.setText(shown(audio_.status()) + (midi.isEmpty() ? "" : "  |  MIDI: " + midi) +
                        (said_.empty() ? "" : "  |  " + shown(said_)),
                    juce::dontSendNotification);
}

/// So that Space plays before anything was clicked, and wherever nothing else has the keys.
void StandaloneView::takeKeyboard() {
    auto* const editor = dynamic_cast<ScreenEditor*>(editor_.get());
    const auto* const focused = juce::Component::getCurrentlyFocusedComponent();
    const bool isTaken = focused && focused != getTopLevelComponent() && focused != this;
    if (isTaken || !isShowing() || !editor || !editor->screen()) return;
    editor->screen()->grabKeyboardFocus();
}

/// So that the sheet of settings leads to them.
void StandaloneView::offerDevices(ScreenContext& context) {
    if (context.devices.open) return;
    context.devices = {.open = [this] { audio_.showSettings(*this); },
                       .audio = [this] { return audio_.status(); },
                       .midi =
                           [this] {
                               const auto names = audio_.midi().names();
                               return names.isEmpty() ? std::string("none") : names.toStdString();
                           }};
}

void StandaloneView::say(const std::string& line) {
    said_ = line;
}

// --- Keys ---

void StandaloneView::handleNoteOn(juce::MidiKeyboardState*, int channel, int note, float velocity) {
    audio_.player().pushMidi(juce::MidiMessage::noteOn(channel, note, velocity));
}

void StandaloneView::handleNoteOff(juce::MidiKeyboardState*, int channel, int note, float) {
    audio_.player().pushMidi(juce::MidiMessage::noteOff(channel, note));
}

// --- Looks ---

void StandaloneView::paint(juce::Graphics& graphics) {
    graphics.fillAll(brush::colour(palette::kGround));
}

int StandaloneView::px(double units) const {
    return juce::roundToInt(units * dynamic_cast<ScreenEditor&>(*editor_).zoom());
}

/// Another zoom is another size of the editor, which the window follows.
void StandaloneView::childBoundsChanged(juce::Component* child) {
    if (child != editor_.get() || laysOut_) return;
    setSize(editor_->getWidth(), editor_->getHeight() + px(kKeys) + px(kRow));
    limitWindow();
}

/// JUCE takes the frame off the limits, and knows it only once the window is shown.
void StandaloneView::limitWindow() {
    auto* const window = findParentComponentOfClass<juce::ResizableWindow>();
    const auto* const peer = window ? window->getPeer() : nullptr;
    if (!peer) return;
    const auto frame = peer->getFrameSizeIfPresent();
    const juce::Point<int> least(px(ScreenLayout::kLeastWidth) +
                                     (frame ? frame->getLeftAndRight() : 0),
                                 px(ScreenLayout::kLeastHeight) + px(kKeys) + px(kRow) +
                                     (frame ? frame->getTopAndBottom() : 0));
    if (std::exchange(least_, least) != least)
        window->setResizeLimits(least.x, least.y, kMost, kMost);
}

void StandaloneView::resized() {
    const juce::ScopedValueSetter<bool> guard(laysOut_, true);
    for (juce::Label* const label : {&notice_, &status_}) label->setFont(brush::regular(px(kText)));
    keyboard_.letters = static_cast<float>(px(kOctave));
    keyboard_.setKeyWidth(
        juce::jmax(static_cast<float>(px(kKey)), static_cast<float>(getWidth()) / kWhiteKeys));
    auto area = getLocalBounds();
    auto status = area.removeFromBottom(px(kRow));
    devices_.setBounds(status.removeFromRight(px(kAudio)).reduced(px(kGap)));
    if (told_.isVisible()) told_.setBounds(status.removeFromRight(px(kButton)).reduced(px(kGap)));
    const int noticed = notice_.getFont().getStringWidth(notice_.getText()) + px(kButton) / 4;
    notice_.setBounds(status.removeFromRight(notice_.getText().isEmpty() ? 0 : noticed));
    status_.setBounds(status);
    keyboard_.setBounds(area.removeFromBottom(px(kKeys)));
    editor_->setBounds(area);
}

} // namespace zephyra
