// Canvas: a picture in memory that is drawn on with cairo and told as PNG.
#pragma once

#include "platform/text/result.h"

#include <cairo.h>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace zephyra {

/// Red, green, blue and opacity, each 0 to 1.
struct Colour {
    double red, green, blue, alpha = 1.0;

    /// From 0xRRGGBB.
    static constexpr Colour hex(std::uint32_t rgb, double alpha = 1.0) noexcept {
        return {(rgb >> 16 & 0xFF) / 255.0, (rgb >> 8 & 0xFF) / 255.0, (rgb & 0xFF) / 255.0, alpha};
    }
    constexpr Colour faded(double opacity) const noexcept {
        return {red, green, blue, alpha * opacity};
    }
};

/// The colour at share (0 to 1, clamped) between from and to.
Colour blend(const Colour& from, const Colour& to, double share) noexcept;
/// The same along a row of at least two colours, evenly spaced.
Colour blend(std::span<const Colour> stops, double share) noexcept;

/// What all pictures are drawn in.
namespace theme {
inline constexpr Colour background = Colour::hex(0x0E1116);
inline constexpr Colour panel = Colour::hex(0x141923);
inline constexpr Colour frame = Colour::hex(0x2C3544);
inline constexpr Colour grid = Colour::hex(0x8FA3C0, 0.12);
inline constexpr Colour title = Colour::hex(0xF2F5FA);
inline constexpr Colour text = Colour::hex(0xBAC4D3);
inline constexpr Colour faintText = Colour::hex(0x8793A6);
inline constexpr Colour source = Colour::hex(0x7C93B8);
inline constexpr Colour output = Colour::hex(0x5FC9B8);
inline constexpr Colour warning = Colour::hex(0xFF5D6C);
inline constexpr double titleSize = 25; // pixels
inline constexpr double textSize = 14;
inline constexpr double tickSize = 12.5;
} // namespace theme

/// A rectangle in pixels; y grows downwards.
struct Box {
    double x, y, width, height;

    constexpr double right() const noexcept { return x + width; }
    constexpr double bottom() const noexcept { return y + height; }
};

/// Which part of a text stands at the given point.
enum class TextAnchor { left, centre, right };
enum class TextWeight { normal, bold };
enum class TextTurn { none, upwards };

struct TextStyle {
    Colour colour = theme::text;
    double size = theme::textSize; // pixels
    TextAnchor anchor = TextAnchor::left;
    TextWeight weight = TextWeight::normal;
    TextTurn turn = TextTurn::none;
};

/// width · height pixels of the theme's background. When memory is short nothing is drawn, and png
/// says so. MAIN.
class Canvas {
public:
    Canvas(int width, int height);

    /// For shapes that the operations below do not offer.
    cairo_t* context() const noexcept { return context_.get(); }

    void setColour(const Colour& colour);
    void fill(const Box& box, const Colour& colour);
    void outline(const Box& box, const Colour& colour);
    void line(double x1, double y1, double x2, double y2, const Colour& colour, double width = 1);
    /// text with its anchor at x and its baseline at y; a byte that is not UTF-8 shows as "?".
    void text(double x, double y, const std::string& text, const TextStyle& style = {});
    /// Pixels.
    double textWidth(const std::string& text, const TextStyle& style = {});
    /// text, cut to width pixels with an ellipsis where it is longer.
    std::string fitted(const std::string& text, double width, const TextStyle& style = {});

    /// What png gave of another canvas, with its corner at x and y; nothing for other bytes.
    void picture(double x, double y, std::span<const std::byte> png);

    /// Draws inside box only, until resetClip.
    void clip(const Box& box);
    void resetClip();

    /// The bytes of a PNG file; the same picture gives the same bytes.
    Result<std::vector<std::byte>> png() const;

private:
    struct Release {
        void operator()(cairo_surface_t* surface) const noexcept { cairo_surface_destroy(surface); }
        void operator()(cairo_t* context) const noexcept { cairo_destroy(context); }
    };
    std::unique_ptr<cairo_surface_t, Release> surface_;
    std::unique_ptr<cairo_t, Release> context_;
};

} // namespace zephyra
