// Pixels: the rows of an opaque picture, and how colours are laid on them.
#pragma once

#include "screens/draw/brush.h"
#include "screens/draw/pixel_rows.h"

#include <juce_graphics/juce_graphics.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace zephyra {

using Pixel = std::uint32_t;
static_assert(juce::PixelARGB::indexA == 3 && juce::PixelARGB::indexB == 0);

/// A colour for pixels, 0..255 each.
struct Tint {
    int red = 0, green = 0, blue = 0;

    Tint() = default;
    Tint(int r, int g, int b) : red(r), green(g), blue(b) {}
    explicit Tint(Color c)
        : red(static_cast<int>(c.red * 255.0f + 0.5f)),
          green(static_cast<int>(c.green * 255.0f + 0.5f)),
          blue(static_cast<int>(c.blue * 255.0f + 0.5f)) {}
    Pixel pixel() const {
        return 0xff000000 | static_cast<Pixel>(red) << 16 | static_cast<Pixel>(green) << 8 |
               static_cast<Pixel>(blue);
    }
    /// share: 0..256 of other.
    Tint towards(const Tint& other, int share) const {
        return {red + ((other.red - red) * share >> 8),
                green + ((other.green - green) * share >> 8),
                blue + ((other.blue - blue) * share >> 8)};
    }
};

/// An opaqueImage or what a window is painted into, opened to be written, and the box outside which
/// nothing is. alpha is 0..256 everywhere. Message thread.
class Pixels {
public:
    Pixels(juce::Image& image, const Box& clip)
        : Pixels(PixelRows(juce::Image::BitmapData(image, juce::Image::BitmapData::readWrite)),
                 clip) {}
    Pixels(const PixelRows& rows, const Box& clip) : rows_(rows), clip_(clip) {}

    const Box& clip() const noexcept { return clip_; }
    /// Only what the clip contains may be touched: column 0 need not be there.
    Pixel* row(int y) const { return rows_.row(y); }

    /// Two of the four bytes at once.
    static void mix(Pixel& pixel, Pixel colour, int alpha) {
        constexpr Pixel half = 0xff00ff;
        const auto share = static_cast<Pixel>(alpha), rest = 256 - share;
        pixel = (((pixel & half) * rest + (colour & half) * share) >> 8 & half) |
                (((pixel >> 8 & half) * rest + (colour >> 8 & half) * share) & ~half);
    }

    /// The pixels of a row from left up to right, cut by the clip.
    void mixSpan(int y, int left, int right, const Tint& tint, int alpha) const {
        if (y < clip_.y || y >= clip_.bottom() || alpha <= 0) return;
        left = std::max(left, clip_.x);
        right = std::min(right, clip_.right());
        if (left >= right) return;
        Pixel* const pixels = row(y);
        const Pixel colour = tint.pixel();
        if (alpha >= 256) return std::fill(pixels + left, pixels + right, colour), void();
        mixRun(pixels + left, right - left, colour, static_cast<std::uint64_t>(alpha));
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
    /// As mix(), two pixels at once.
    static void mixRun(Pixel* pixels, int count, Pixel colour, std::uint64_t share) {
        constexpr std::uint64_t half = 0x00ff00ff00ff00ff;
        const std::uint64_t both = std::uint64_t{colour} << 32 | colour, rest = 256 - share;
        const std::uint64_t low = (both & half) * share, high = (both >> 8 & half) * share;
        for (; count >= 2; count -= 2, pixels += 2) {
            std::uint64_t two;
            std::memcpy(&two, pixels, sizeof two);
            two = (((two & half) * rest + low) >> 8 & half) |
                  (((two >> 8 & half) * rest + high) & ~half);
            std::memcpy(pixels, &two, sizeof two);
        }
        if (count > 0) mix(*pixels, colour, static_cast<int>(share));
    }
    static int part(double share, int alpha) { return static_cast<int>(share * alpha); }

    PixelRows rows_;
    Box clip_;
};

} // namespace zephyra
