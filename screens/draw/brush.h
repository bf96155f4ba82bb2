// brush: colours and letters of the window for JUCE.
#pragma once

#include "screens/model/palette.h"
#include "screens/model/screen_layout.h"

#include <juce_graphics/juce_graphics.h>

#include <string>

namespace zephyra::brush {

inline juce::Colour colour(Color c) {
    return juce::Colour::fromFloatRGBA(c.red, c.green, c.blue, c.alpha);
}
inline juce::Colour colour(Color c, float alpha) {
    return colour(c).withAlpha(alpha);
}

/// The window's typeface with digits of equal width, so high in pixels. Message thread.
juce::Font regular(double pixels);
juce::Font medium(double pixels);

inline juce::Rectangle<int> rectangle(const Box& box) {
    return {box.x, box.y, box.width, box.height};
}
inline Box boxOf(const juce::Rectangle<int>& of) {
    return {of.getX(), of.getY(), of.getWidth(), of.getHeight()};
}
inline juce::Rectangle<float> floats(const Box& box) {
    return rectangle(box).toFloat();
}

/// UTF-8.
inline juce::String text(const std::string& utf8) {
    return juce::String::fromUTF8(utf8.c_str(), static_cast<int>(utf8.size()));
}

/// The same as its letters stand from left to right, for drawing alone: accents on their letters,
/// scripts that run from right to left in their order, and no marks that are not seen.
juce::String drawn(const std::string& utf8);
/// One line of text that may be anybody's, in the current font and colour. What has no room ends in
/// dots, after a whole character.
void drawLine(juce::Graphics& graphics, const std::string& utf8, juce::Rectangle<float> box,
              juce::Justification where);

} // namespace zephyra::brush
