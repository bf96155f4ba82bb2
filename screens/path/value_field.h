// ValueField: a field over a knob's number, in which a value is typed.
#pragma once

#include "screens/model/path/path_places.h"

#include <juce_gui_basics/juce_gui_basics.h>

#include <functional>
#include <optional>
#include <string>

namespace zephyra {

struct ValueFieldCalls {
    /// Enter: false keeps the field open, for what was typed is no value.
    std::function<bool(const std::string& text)> enter;
    std::function<void()> reset;  ///< the press that opened it was the first of two
    std::function<void()> closed; ///< may delete the field
};

/// Enter takes what was typed, Escape and leaving it take nothing. Message thread.
class ValueField final : public juce::TextEditor, juce::Timer {
public:
    ValueField(ValueFieldCalls calls, const CellPlace& place);

    /// Shows text with the caret behind it, else shown, selected; and takes the keyboard.
    void begin(const std::optional<juce::String>& text, const juce::String& shown);

    void paint(juce::Graphics& graphics) override;
    void paintOverChildren(juce::Graphics& graphics) override;
    void mouseDoubleClick(const juce::MouseEvent& event) override;

private:
    void takeKeyboard();
    void timerCallback() override { takeKeyboard(); }
    void enter();
    void leave();

    ValueFieldCalls calls_;
    const float frame_, corner_; // pixels
    bool isWrong_ = false;
    juce::uint32 openedAt_ = 0;
    int tries_ = 0;
};

} // namespace zephyra
