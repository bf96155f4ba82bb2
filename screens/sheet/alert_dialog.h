// AlertDialog: an alert of the system over the window.
#pragma once

#include "hosting/window_model.h"
#include "screens/draw/screen_button.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace zephyra {

/// Covers the window it is put into; what is below it steps back and hears nothing. Enter in
/// its field presses the first button, if that removes nothing; Escape, and Enter elsewhere, the
/// one that leaves all as it was. Tab goes round field and buttons, and Space or Enter press the
/// one that it is at. It is answered once. Message thread.
class AlertDialog final : public juce::Component {
public:
    using Answered = std::function<void(std::size_t button, const std::string& typed)>;

    /// destroys: which buttons remove something, which are red.
    AlertDialog(ScreenContext& context, const ShownAlert& alert, const std::vector<bool>& destroys,
                Answered answered);

    /// For a window of that layout.
    void layOut(const ScreenLayout& layout);
    void takeKeyboard();

    void paint(juce::Graphics& graphics) override;
    void mouseDown(const juce::MouseEvent&) override {}
    bool keyPressed(const juce::KeyPress& key) override;
    void parentHierarchyChanged() override;

private:
    void answer(std::size_t button);
    void moveFocus(bool back);
    bool isSafe(std::size_t button) const;
    std::size_t dismissing() const;
    int textHeight(const juce::String& text, const juce::Font& font, int width) const;

    ScreenContext& context_;
    const ShownAlert alert_;
    const std::vector<bool> destroys_;
    Answered answered_; // empty once it was called
    std::vector<std::unique_ptr<ScreenButton>> buttons_;
    juce::TextEditor field_;
    juce::Rectangle<int> panel_, title_, message_;
    double scale_ = 1.0;
};

} // namespace zephyra
