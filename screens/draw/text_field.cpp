#include "screens/draw/text_field.h"

#include "screens/draw/brush.h"

namespace zephyra {

void dressTextField(juce::TextEditor& field) {
    const auto colour = [&field](int id, Color color) {
        field.setColour(id, brush::colour(color));
    };
    colour(juce::TextEditor::backgroundColourId, palette::kGround);
    colour(juce::TextEditor::textColourId, palette::kBright);
    colour(juce::TextEditor::outlineColourId, palette::kTrack);
    colour(juce::TextEditor::focusedOutlineColourId, palette::kBright);
    colour(juce::TextEditor::highlightColourId, palette::kTrack);
    colour(juce::TextEditor::highlightedTextColourId, palette::kBright);
    colour(juce::CaretComponent::caretColourId, palette::kAccent);
}

} // namespace zephyra
