// ChoiceBox: a list in which what is chosen can be chosen again.
#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

namespace zephyra {

/// A player chooses a program again to be rid of what was changed since; JUCE's box keeps silent
/// then. Message thread.
class ChoiceBox final : public juce::ComboBox {
public:
    void showPopup() override {
        ComboBox::showPopup();
        before_ = getSelectedId();
        if (before_ == 0) return;
        unchosen_ = getTextWhenNothingSelected();
        setTextWhenNothingSelected(getText()); // setText would choose it
        setSelectedId(0, juce::dontSendNotification);
    }
    /// To be called now and then: a list that was closed without a choice stays as it was.
    void settle() {
        if (before_ == 0 || isPopupActive()) return;
        if (getSelectedId() == 0) setSelectedId(before_, juce::dontSendNotification);
        before_ = 0;
        setTextWhenNothingSelected(unchosen_);
    }

private:
    int before_ = 0; // while the list is open
    juce::String unchosen_;
};

} // namespace zephyra
