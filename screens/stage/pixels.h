// Pixels: the rows of an opaque picture, and how colours are laid on them.
#pragma once

#include "screens/draw/brush.h"
#include "screens/model/screen_layout.h"

#include <juce_graphics/juce_graphics.h>

#include <algorithm>
#include <cstdint>

namespace zephyra {

/// A colour for pixels, 0..255 each.
struct Tint {
    int red = 0, green = 0, blue = 0;

    Tint() = default;
    Tint(int r, int g, int b) : red(r), green(g), blue(b) {}
    explicit Tint(Color c)
        : red(static_cast<int>(c.red * 255.0f + 0.5f)),
          green(static_cast<int>(c.green * 255.0f + 0.5f)),
          blue(static_cast<int>(c.blue * 255.0f + 0.5f)) {}
    /// share: 0..256 of other.
    Tint towards(const Tint& other, int share) const {
        return {red + ((other.red - red) * share >> 8),
                green + ((other.green - green) * share >> 8),
                blue + ((other.blue - blue) * share >> 8)};
    }
};

/// A juce::Image of the format RGB made by SoftwareImageType, opened to be written, and the box
/// outside which nothing is. alpha is 0..256 everywhere. Message thread.
class Pixels {
public:
    Pixels(juce::Image& image, const Box& clip)
        : data_(image, juce::Image::BitmapData::readWrite), clip_(clip) {
        jassert(image.getFormat() == juce::Image::RGB &&
                data_.pixelStride == sizeof(juce::PixelRGB));
    }

    const Box& clip() const noexcept { return clip_; }
    juce::PixelRGB* row(int y) const {
        return reinterpret_cast<juce::PixelRGB*>(data_.getLinePointer(y));
    }

    static void mix(juce::PixelRGB& pixel, const Tint& tint, int alpha) {
        const auto to = [alpha](int from, int target) {
            return static_cast<std::uint8_t>(from + ((target - from) * alpha >> 8));
        };
        pixel.setARGB(255, to(pixel.getRed(), tint.red), to(pixel.getGreen(), tint.green),
                      to(pixel.getBlue(), tint.blue));
    }
    static void addLight(juce::PixelRGB& pixel, const Tint& tint, int alpha) {
        const auto to = [alpha](int from, int light) {
            return static_cast<std::uint8_t>(std::min(255, from + (light * alpha >> 8)));
        };
        pixel.setARGB(255, to(pixel.getRed(), tint.red), to(pixel.getGreen(), tint.green),
                      to(pixel.getBlue(), tint.blue));
    }

    /// The pixels of a row from left up to right, cut by the clip.
    void mixSpan(int y, int left, int right, const Tint& tint, int alpha) const {
        if (y < clip_.y || y >= clip_.bottom() || alpha <= 0) return;
        left = std::max(left, clip_.x);
        right = std::min(right, clip_.right());
        if (left >= right) return;
        juce::PixelRGB* const pixels = row(y);
        for (int x = left; x < right; ++x) mix(pixels[x], tint, alpha);
    }
    /// The same with ends inside pixels.
    void mixSpan(int y, double left, double right, const Tint& tint, int alpha) const {
        if (!(right > left)) return;
        const int first = static_cast<int>(std::ceil(left)), last = static_cast<int>(right);
        if (first > last) return mixSpan(y, last, last + 1, tint, part(right - left, alpha));
        mixSpan(y, first - 1, first, tint, part(first - left, alpha));
        mixSpan(y, first, last, tint, alpha);
        mixSpan(y, last, last + 1, tint, part(right - last, alpha));
    }
    void mixBox(const Box& box, const Tint& tint, int alpha) const {
        for (int y = std::max(box.y, clip_.y); y < std::min(box.bottom(), clip_.bottom()); ++y)
            mixSpan(y, box.x, box.right(), tint, alpha);
    }
    void mixColumn(int x, int top, int bottom, const Tint& tint, int alpha) const {
        mixBox({x, top, 1, bottom - top}, tint, alpha);
    }

private:
    static int part(double share, int alpha) { return static_cast<int>(share * alpha); }

    juce::Image::BitmapData data_;
    Box clip_;
};

/// An opaque picture that Pixels writes.
inline juce::Image opaqueImage(int width, int height) {
    return juce::Image(juce::Image::RGB, std::max(1, width), std::max(1, height), false,
                       juce::SoftwareImageType());
}

} // namespace zephyra
