// contrastOf: how well letters stand out from what is below them.
#pragma once

#include <juce_graphics/juce_graphics.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace zephyra {

inline double luminance(juce::Colour colour) {
    const auto linear = [](double share) {
        return share <= 0.04045 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.getFloatRed()) + 0.7152 * linear(colour.getFloatGreen()) +
           0.0722 * linear(colour.getFloatBlue());
}

/// 1 to 21.
inline double contrastOf(juce::Colour one, juce::Colour two) {
    const double a = luminance(one), b = luminance(two);
    return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

/// Of letters of a colour in box, where written differs from bare, against what bare has there: the
/// least but for the twentieth part of the pixels that stands out least. 1 where nothing differs.
inline double contrastOf(const juce::Image& written, const juce::Image& bare,
                         juce::Rectangle<float> box, juce::Colour colour) {
    const juce::Image::BitmapData with(written, juce::Image::BitmapData::readOnly);
    const juce::Image::BitmapData without(bare, juce::Image::BitmapData::readOnly);
    const auto area = box.getSmallestIntegerContainer().getIntersection(written.getBounds());
    struct Pixel {
        int differs;
        double contrast;
    };
    std::vector<Pixel> pixels;
    int most = 0;
    for (int y = area.getY(); y < area.getBottom(); ++y)
        for (int x = area.getX(); x < area.getRight(); ++x) {
            const juce::Colour letter = with.getPixelColour(x, y);
            const juce::Colour ground = without.getPixelColour(x, y);
            const int differs = std::abs(letter.getGreen() - ground.getGreen()) +
                                std::abs(letter.getRed() - ground.getRed());
            most = std::max(most, differs);
            if (differs > 0)
                pixels.push_back({differs, contrastOf(ground.overlaidWith(colour), ground)});
        }
    std::erase_if(pixels, [&](const Pixel& one) { return one.differs < most / 2; }); // soft edges
    if (pixels.empty()) return 1.0;
    std::ranges::sort(pixels, {}, &Pixel::contrast);
    return pixels[pixels.size() / 20].contrast;
}

} // namespace zephyra
