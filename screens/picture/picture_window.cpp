#include "screens/picture/picture_window.h"

#include <utility>

namespace juce {
bool dispatchNextMessageOnSystemQueue(bool returnIfNoPendingMessages);
}

namespace zephyra {

namespace {

constexpr juce::int64 kNextMove = 20, kNextClick = 1000, kOfDoubleClick = 80; // milliseconds
constexpr float kNotch = 50.0f / 256.0f;                                      // as JUCE tells it
constexpr auto kMouse = juce::MouseInputSource::InputSourceType::mouse;

/// Menus ask for the display that they are on.
void pretendDisplay() {
    auto& displays = const_cast<juce::Displays&>(juce::Desktop::getInstance().getDisplays());
    if (!displays.displays.isEmpty()) return;
    juce::Displays::Display display;
    display.totalArea = display.userArea = {0, 0, 10000, 10000};
    display.isMain = true;
    display.scale = 1.0;
    display.dpi = 96.0;
    displays.displays.add(display);
}

} // namespace

/// What a display's window would be.
class PictureWindow::Peer final : public juce::ComponentPeer {
public:
    Peer(juce::Component& of, int flags) : ComponentPeer(of, flags) {}

    juce::RectangleList<int> takeRepaints() { return std::exchange(repaints_, {}); }

    void repaint(const juce::Rectangle<int>& area) override { repaints_.addWithoutMerging(area); }
    void performAnyPendingRepaintsNow() override {}
    juce::Rectangle<int> getBounds() const override { return component.getLocalBounds(); }
    juce::Point<float> localToGlobal(juce::Point<float> at) override { return at; }
    juce::Point<float> globalToLocal(juce::Point<float> at) override { return at; }
    bool contains(juce::Point<int> at, bool) const override { return getBounds().contains(at); }
    bool isFocused() const override { return isFocused_; }
    void grabFocus() override {
        if (!std::exchange(isFocused_, true)) handleFocusGain();
    }

    void* getNativeHandle() const override { return nullptr; }
    void setVisible(bool) override {}
    void setTitle(const juce::String&) override {}
    void setBounds(const juce::Rectangle<int>&, bool) override {}
    void setMinimised(bool) override {}
    bool isMinimised() const override { return false; }
    void setFullScreen(bool) override {}
    bool isFullScreen() const override { return false; }
    void setIcon(const juce::Image&) override {}
    OptionalBorderSize getFrameSizeIfPresent() const override { return {}; }
    juce::BorderSize<int> getFrameSize() const override { return {}; }
    bool setAlwaysOnTop(bool) override { return false; }
    void toFront(bool) override {}
    void toBehind(ComponentPeer*) override {}
    void setAlpha(float) override {}
    juce::StringArray getAvailableRenderingEngines() override { return {"Picture"}; }

private:
    void textInputRequired(juce::Point<int>, juce::TextInputTarget&) override {}

    juce::RectangleList<int> repaints_;
    bool isFocused_ = false;
};

PictureWindow::PictureWindow(juce::Component& content)
    : content_(content), now_(juce::Time::currentTimeMillis()) {
    pretendDisplay();
    setLookAndFeel(&look_);
    setOpaque(true);
    setSize(content.getWidth(), content.getHeight());
    addAndMakeVisible(content);
    setVisible(true);
    addToDesktop(0);
    peer().grabFocus();
}

PictureWindow::~PictureWindow() {
    removeFromDesktop();
    removeChildComponent(&content_);
    setLookAndFeel(nullptr);
}

juce::ComponentPeer* PictureWindow::createNewPeer(int style, void*) {
    return new Peer(*this, style);
}

PictureWindow::Peer& PictureWindow::peer() const {
    return static_cast<Peer&>(*getPeer());
}

int PictureWindow::takeRepaints() {
    return peer().takeRepaints().getNumRectangles();
}

void PictureWindow::repaintInto(juce::Image& picture) {
    juce::RectangleList<int> areas;
    for (const auto& area : peer().takeRepaints()) areas.add(area); // none twice
    juce::LowLevelGraphicsSoftwareRenderer context(picture, {}, areas);
    draw(context);
}

void PictureWindow::draw(juce::LowLevelGraphicsContext& context) {
    peer().handlePaint(context);
}

juce::Image PictureWindow::picture() {
    juce::Image image(juce::Image::RGB, getWidth(), getHeight(), true, juce::SoftwareImageType());
    juce::LowLevelGraphicsSoftwareRenderer context(image);
    draw(context);
    return image;
}

void PictureWindow::point(juce::Point<float> at, bool isDown) {
    at_ = at;
    juce::ModifierKeys::currentModifiers = held_;
    const auto keys = isDown ? held_.withFlags(juce::ModifierKeys::leftButtonModifier) : held_;
    peer().handleMouseEvent(kMouse, at, keys, 0.0f, 0.0f, now_);
    juce::ModifierKeys::currentModifiers = {};
}

void PictureWindow::moveTo(juce::Point<float> at) {
    now_ += kNextMove;
    point(at, false);
}

void PictureWindow::press(juce::Point<float> at) {
    now_ += kNextClick; // begins a click of its own
    point(at, false);
    point(at, true);
}

void PictureWindow::dragTo(juce::Point<float> at) {
    now_ += kNextMove;
    point(at, true);
}

void PictureWindow::release() {
    now_ += kNextMove;
    point(at_, false);
}

void PictureWindow::click(juce::Point<float> at, int times) {
    press(at);
    release();
    for (; times > 1; --times) {
        now_ += kOfDoubleClick;
        point(at, true);
        release();
    }
}

void PictureWindow::wheel(juce::Point<float> at, double notches) {
    moveTo(at);
    juce::ModifierKeys::currentModifiers = held_;
    const juce::MouseWheelDetails turn{0.0f, static_cast<float>(notches) * kNotch, false, false,
                                       false};
    peer().handleMouseWheel(kMouse, at, now_, turn);
    juce::ModifierKeys::currentModifiers = {};
}

bool PictureWindow::key(const juce::KeyPress& key) {
    juce::ModifierKeys::currentModifiers = key.getModifiers();
    const bool wasTaken = peer().handleKeyPress(key);
    juce::ModifierKeys::currentModifiers = {};
    return wasTaken;
}

bool PictureWindow::drop(const juce::StringArray& files, juce::Point<float> at) {
    juce::ComponentPeer::DragInfo info;
    info.files = files;
    info.position = at.roundToInt();
    peer().handleDragMove(info);
    const bool wasTaken = peer().handleDragDrop(info);
    settle(); // JUCE hands them over with the next message
    return wasTaken;
}

void PictureWindow::settle() {
    while (juce::dispatchNextMessageOnSystemQueue(true)) {
    }
}

} // namespace zephyra
