// ScreenControl: the base of what a hand finds in the window: hover, focus, keys, help and the
// texts for assistive technology.
#pragma once

#include "screens/model/screen_context.h"

#include <juce_gui_basics/juce_gui_basics.h>

#include <string>

namespace zephyra {

/// Repaints when the pointer comes and goes, or the keyboard does, and has the foot say its
/// sentence meanwhile. What it shows and what it does are others' matter. Message thread.
class ScreenControl : public juce::Component {
public:
    /// context outlives this. title: for assistive technology, "Freeze".
    ScreenControl(ScreenContext& context, const std::string& title);

    /// One sentence on what it does, for the foot and assistive technology.
    void setHelp(const std::string& help);
    const std::string& help() const noexcept { return help_; }
    /// What it is now, for assistive technology: "armed". Empty for nothing worth telling.
    void setValue(const std::string& value);

    bool isHovered() const noexcept { return isHovered_; }
    /// A frame round what has the focus shows while keys are used (ScreenContext::isByKeys), not
    /// while pointers are: a press focuses as well, so that keys go on where the hand was.
    bool showsFocus() const noexcept { return showsFocus_; }
    void showFocus(bool on);

    void mouseEnter(const juce::MouseEvent& event) override;
    void mouseExit(const juce::MouseEvent& event) override;
    void focusGained(FocusChangeType cause) override;
    void focusLost(FocusChangeType cause) override;
    bool keyPressed(const juce::KeyPress& key) final;

protected:
    ScreenContext& context() const noexcept { return context_; }
    /// What the foot says while a hand is near; help() unless there is more to say now.
    virtual std::string sentence() const { return help_; }
    /// isHovered or showsFocus changed.
    virtual void reachChanged() { repaint(); }
    /// isHovered did; nothing to do for what looks the same under the pointer.
    virtual void hoverChanged() { reachChanged(); }
    /// Whether it does something with a key. Those with Ctrl or Alt are the window's or the host's,
    /// and do not come here.
    virtual bool takeKey(const juce::KeyPress&) { return false; }
    /// Has the foot say this.
    virtual void tell(const std::string& sentence);
    /// A frame along the edge, line pixels wide, while showsFocus.
    void paintFocus(juce::Graphics& graphics, int line) const;

private:
    void hover(bool on);

    ScreenContext& context_;
    std::string help_;
    bool isHovered_ = false, showsFocus_ = false;
};

} // namespace zephyra
