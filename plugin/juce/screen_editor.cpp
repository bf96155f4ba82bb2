#include "plugin/juce/screen_editor.h"

#include "screens/desktop/x11_display.h"
#include "screens/draw/brush.h"
#include "screens/remembered_screen.h"

#include <utility>

namespace zephyra {

namespace {

constexpr int kMost = 8192; // pixels

int pixels(int units, double zoom) {
    return juce::roundToInt(units * zoom);
}

} // namespace

ScreenEditor::ScreenEditor(ZephyraProcessor& shell)
    : AudioProcessorEditor(shell), shell_(shell), zoom_(rememberedSettings().zoom) {
    // Its window is made next, of which a server without window manager complains.
    const auto* const messages = juce::MessageManager::getInstanceWithoutCreating();
    if (messages && messages->currentThreadHasLockedMessageManager()) x11::dropOwnErrors();
    setOpaque(true);
    setResizable(true, false);
    const auto [width, height] = std::pair(shell.window.width, shell.window.height);
    setResizeLimits(pixels(ScreenLayout::kLeastWidth, zoom_),
                    pixels(ScreenLayout::kLeastHeight, zoom_), kMost, kMost);
    if (width > 0)
        setSize(width, height);
    else
        setSize(pixels(ScreenLayout::kStartWidth, zoom_),
                pixels(ScreenLayout::kStartHeight, zoom_));
}

ScreenEditor::~ScreenEditor() = default;

void ScreenEditor::parentHierarchyChanged() {
    if (!screen_ && getPeer() && juce::MessageManager::existsAndIsCurrentThread()) show();
}

void ScreenEditor::show() {
    x11::dropOwnErrors();
    screen_ = makeRememberedScreen(shell_.plugin());
    ScreenContext& context = screen_->context();
    context.settingsChanged = [this, before = std::move(context.settingsChanged)] {
        before();
        followZoom();
    };
    addAndMakeVisible(*screen_);
    resized();
}

/// The window keeps its size in units.
void ScreenEditor::followZoom() {
    const double zoom = screen_->settings().zoom, change = zoom / zoom_;
    if (change == 1.0) return;
    zoom_ = zoom;
    const int width = juce::roundToInt(getWidth() * change);
    const int height = juce::roundToInt(getHeight() * change);
    setResizeLimits(pixels(ScreenLayout::kLeastWidth, zoom),
                    pixels(ScreenLayout::kLeastHeight, zoom), kMost, kMost);
    setSize(width, height);
}

void ScreenEditor::resized() {
    if (!screen_) return;
    shell_.window.width = getWidth();
    shell_.window.height = getHeight();
    screen_->setBounds(getLocalBounds());
}

bool ScreenEditor::keyPressed(const juce::KeyPress& key) {
    const bool isPlugin = shell_.wrapperType != juce::AudioProcessor::wrapperType_Undefined &&
                          shell_.wrapperType != juce::AudioProcessor::wrapperType_Standalone;
    if (isPlugin) keys_.passOn(*this, key);
    return isPlugin;
}

void ScreenEditor::paint(juce::Graphics& graphics) {
    if (!screen_) graphics.fillAll(brush::colour(palette::kGround));
}

} // namespace zephyra
