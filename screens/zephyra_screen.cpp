#include "screens/zephyra_screen.h"

#include "screens/desktop/window_look.h"
#include "screens/desktop/x11_display.h"
#include "screens/draw/brush.h"

#include <utility>

namespace zephyra {

namespace {

constexpr double kFindsEvery = 0.1; // seconds: within a drag's last rest

} // namespace

ZephyraScreen::ZephyraScreen(PluginInstance& plugin, const ScreenSettings& settings)
    : source_(plugin), context_{.source = source_, .settings = settings} {
    useWindowLook();
    context_.settingsChanged = [this] { layOutAnew(); };
    context_.cancelTouches = [this] { touches_.cancelAll(); };
    path_.setVoices(&voices_);
    // The keyboard's order is the signal's: what is played, by what it is shaped, what comes out.
    juce::Component* const inOrder[] = {&top_, &stage_, &path_, &meter_, &strip_, &foot_};
    int order = 1;
    for (juce::Component* const area : inOrder) {
        area->setExplicitFocusOrder(order++);
        addAndMakeVisible(area);
    }
    addMouseListener(this, true); // also of what stands in it
    setWantsKeyboardFocus(true);
    setFocusContainerType(FocusContainerType::keyboardFocusContainer); // itself is no stop
    touches_.followWindow();
    setSize(ScreenLayout::kStartWidth, ScreenLayout::kStartHeight);
    display_ = std::make_unique<juce::VBlankAttachment>(
        this, [this] { frame(juce::Time::getMillisecondCounterHiRes() / 1000.0); });
}

ZephyraScreen::~ZephyraScreen() = default;

void ZephyraScreen::frame(double now) {
    time_ = {.now = now, .elapsed = now - shownAt_.value_or(now)};
    shownAt_ = now;
    source_.readFrame(time_);
    for (ScreenArea* const area : areas_) area->frame(time_);
    services_.frame(juce::Time::getMillisecondCounterHiRes() / 1000.0);
    touches_.frame(now);
    const bool isInHost = !findParentComponentOfClass<juce::TopLevelWindow>();
    if (isInHost && now - found_ >= kFindsEvery) {
        found_ = now;
        x11::findUnderPointer(window_, getWidth(), getHeight());
    }
    blitter_.begin(*this);
    for (ScreenArea* const area : areas_) area->blit(blitter_);
    paintNow();
    if (x11::hasUnread()) flush_.triggerAsyncUpdate();
}

/// JUCE would paint after this frame anyhow; then the blitter's boxes lie above, and one flush
/// sends all.
void ZephyraScreen::paintNow() {
    const std::uint64_t before = paints_;
    if (auto* const peer = getPeer()) peer->performAnyPendingRepaintsNow();
    const bool isSent = blitter_.send();
    if (isSent && paints_ == before) ++paints_;
    if (isSent || paints_ != before) x11::flush();
}

void ZephyraScreen::parentHierarchyChanged() {
    void* const window = getWindowHandle();
    if (window && window != std::exchange(window_, window)) x11::freeColourmap(window);
    touches_.followWindow();
}

bool ZephyraScreen::keyPressed(const juce::KeyPress& key) {
    context_.isByKeys = true;
    if (services_.perform(key)) return true;
    if (key.getKeyCode() != juce::KeyPress::tabKey || !hasKeyboardFocus(false)) return false;
    const auto all = juce::KeyboardFocusTraverser().getAllComponents(this);
    const bool isBack = key.getModifiers().isShiftDown();
    if (!all.empty()) (isBack ? all.back() : all.front())->grabKeyboardFocus();
    return true;
}

void ZephyraScreen::mouseDown(const juce::MouseEvent&) {
    context_.isByKeys = false;
    if (auto* const one = dynamic_cast<ScreenControl*>(getCurrentlyFocusedComponent()))
        one->showFocus(false);
}

void ZephyraScreen::resized() {
    layOutAnew();
}

void ZephyraScreen::layOutAnew() {
    const double zoom = context_.settings.zoom * context_.hostScale;
    layout_ = zephyra::layOut(getWidth(), getHeight(), zoom);
    for (ScreenArea* const area : areas_) area->layOut(layout_);
    services_.layOut(layout_);
    touches_.setScale(layout_.scale);
    tip_.layOut(layout_);
    repaint();
}

void ZephyraScreen::paint(juce::Graphics& graphics) {
    graphics.fillAll(brush::colour(palette::kGround));
}

void ZephyraScreen::paintOverChildren(juce::Graphics&) {
    ++paints_;
    flush_.triggerAsyncUpdate();
}

void ZephyraScreen::Flush::handleAsyncUpdate() {
    x11::flush();
    if (x11::hasUnread()) x11::readEvents();
}

} // namespace zephyra
