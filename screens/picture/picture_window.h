// PictureWindow: a window without a display.
#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

namespace zephyra {

/// What is in it is drawn to pictures. Pointer, keys and files come from calls, and go the way that
/// JUCE lets those of a display go: to what stands there, has the keyboard, or blocks the rest.
/// Places are pixels of the window; each hand comes some time after the one before. Message thread.
class PictureWindow final : public juce::Component {
public:
    /// content fills it, and outlives it. Where JUCE found a display, it must not be there.
    explicit PictureWindow(juce::Component& content);
    ~PictureWindow() override;

    juce::Image picture();
    /// Draws all of it.
    void draw(juce::LowLevelGraphicsContext& context);
    /// How many areas were asked to be painted since the last call.
    int takeRepaints();
    /// Draws those areas, and no others, over an earlier picture of the window.
    void repaintInto(juce::Image& picture);

    void moveTo(juce::Point<float> at);
    void press(juce::Point<float> at);
    void dragTo(juce::Point<float> at);
    void release();
    /// So many in the time of a double click.
    void click(juce::Point<float> at, int times = 1);
    /// Of a wheel with notches; upwards where positive.
    void wheel(juce::Point<float> at, double notches);
    /// Keys that are held down while a pointer does something.
    void hold(juce::ModifierKeys keys) { held_ = keys; }
    /// False when nobody took it.
    bool key(const juce::KeyPress& key);
    /// False when nobody wants them there.
    bool drop(const juce::StringArray& files, juce::Point<float> at);

    /// What was put off until the message loop turns. Not while a menu is open, which would ask a
    /// display for its pointer.
    static void settle();

    juce::ComponentPeer* createNewPeer(int style, void* parent) override;
    void resized() override { content_.setBounds(getLocalBounds()); }

private:
    class Peer;
    /// Shows no pointers.
    struct Look final : juce::LookAndFeel_V4 {
        juce::MouseCursor getMouseCursorFor(juce::Component&) override { return {}; }
    };

    Peer& peer() const;
    void point(juce::Point<float> at, bool isDown);

    juce::Component& content_;
    Look look_;
    juce::ModifierKeys held_;
    juce::Point<float> at_;
    juce::int64 now_; // milliseconds, of the last hand
};

} // namespace zephyra
