#include "pictures/cairo/picture_canvas.h"

#include "platform/text/message_text.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <new>
#include <numbers>
#include <string_view>

namespace zephyra {

namespace {

constexpr const char* kFont = "DejaVu Sans";
constexpr const char* kEllipsis = "\u2026";

void selectFont(cairo_t* context, const TextStyle& style) {
    cairo_select_font_face(context, kFont, CAIRO_FONT_SLANT_NORMAL,
                           style.weight == TextWeight::bold ? CAIRO_FONT_WEIGHT_BOLD
                                                            : CAIRO_FONT_WEIGHT_NORMAL);
    cairo_set_font_size(context, style.size);
}

/// Called through C, which no exception may cross.
cairo_status_t append(void* to, const unsigned char* bytes, unsigned int count) noexcept try {
    auto& all = *static_cast<std::vector<std::byte>*>(to);
    const auto more = std::as_bytes(std::span(bytes, count));
    all.insert(all.end(), more.begin(), more.end());
    return CAIRO_STATUS_SUCCESS;
} catch (const std::bad_alloc&) {
    return CAIRO_STATUS_NO_MEMORY;
}

cairo_status_t take(void* from, unsigned char* bytes, unsigned int count) noexcept {
    auto& rest = *static_cast<std::span<const std::byte>*>(from);
    if (rest.size() < count) return CAIRO_STATUS_READ_ERROR;
    std::memcpy(bytes, rest.data(), count);
    rest = rest.subspan(count);
    return CAIRO_STATUS_SUCCESS;
}

bool continuesCharacter(char c) {
    return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

/// Without its last character, which in UTF-8 may be several bytes.
void removeLastCharacter(std::string& text) {
    while (!text.empty() && continuesCharacter(text.back())) text.pop_back();
    if (!text.empty()) text.pop_back();
}

} // namespace

Colour blend(const Colour& from, const Colour& to, double share) noexcept {
    share = std::clamp(share, 0.0, 1.0);
    const auto mix = [share](double a, double b) { return a + (b - a) * share; };
    return {mix(from.red, to.red), mix(from.green, to.green), mix(from.blue, to.blue),
            mix(from.alpha, to.alpha)};
}

Colour blend(std::span<const Colour> stops, double share) noexcept {
    const double at = std::clamp(share, 0.0, 1.0) * static_cast<double>(stops.size() - 1);
    const std::size_t stop = std::min(static_cast<std::size_t>(at), stops.size() - 2);
    return blend(stops[stop], stops[stop + 1], at - static_cast<double>(stop));
}

Canvas::Canvas(int width, int height)
    : surface_(cairo_image_surface_create(CAIRO_FORMAT_RGB24, width, height)),
      context_(cairo_create(surface_.get())) {
    fill({0, 0, static_cast<double>(width), static_cast<double>(height)}, theme::background);
}

void Canvas::setColour(const Colour& colour) {
    cairo_set_source_rgba(context_.get(), colour.red, colour.green, colour.blue, colour.alpha);
}

void Canvas::fill(const Box& box, const Colour& colour) {
    setColour(colour);
    cairo_rectangle(context_.get(), box.x, box.y, box.width, box.height);
    cairo_fill(context_.get());
}

void Canvas::outline(const Box& box, const Colour& colour) {
    setColour(colour);
    cairo_set_line_width(context_.get(), 1);
    cairo_rectangle(context_.get(), box.x - 0.5, box.y - 0.5, box.width + 1, box.height + 1);
    cairo_stroke(context_.get());
}

void Canvas::line(double x1, double y1, double x2, double y2, const Colour& colour, double width) {
    setColour(colour);
    cairo_set_line_width(context_.get(), width);
    cairo_move_to(context_.get(), x1, y1);
    cairo_line_to(context_.get(), x2, y2);
    cairo_stroke(context_.get());
}

void Canvas::text(double x, double y, const std::string& text, const TextStyle& style) {
    const double width = style.anchor == TextAnchor::left ? 0 : textWidth(text, style);
    const double shift = style.anchor == TextAnchor::centre ? width / 2 : width;
    cairo_t* const context = context_.get();
    cairo_save(context);
    selectFont(context, style);
    setColour(style.colour);
    cairo_translate(context, x, y);
    if (style.turn == TextTurn::upwards) cairo_rotate(context, -std::numbers::pi / 2);
    cairo_move_to(context, -shift, 0);
    cairo_show_text(context, onOneLine(text).c_str());
    cairo_restore(context);
}

double Canvas::textWidth(const std::string& text, const TextStyle& style) {
    cairo_text_extents_t extents;
    cairo_save(context_.get());
    selectFont(context_.get(), style);
    cairo_text_extents(context_.get(), onOneLine(text).c_str(), &extents);
    cairo_restore(context_.get());
    return extents.x_advance;
}

std::string Canvas::fitted(const std::string& text, double width, const TextStyle& style) {
    if (textWidth(text, style) <= width) return text;
    std::string cut = text;
    while (!cut.empty() && textWidth(cut + kEllipsis, style) > width) removeLastCharacter(cut);
    return cut + kEllipsis;
}

void Canvas::picture(double x, double y, std::span<const std::byte> png) {
    const std::unique_ptr<cairo_surface_t, Release> read(
        cairo_image_surface_create_from_png_stream(take, &png));
    if (cairo_surface_status(read.get()) != CAIRO_STATUS_SUCCESS) return;
    cairo_set_source_surface(context_.get(), read.get(), x, y);
    cairo_paint(context_.get());
}

void Canvas::clip(const Box& box) {
    cairo_rectangle(context_.get(), box.x, box.y, box.width, box.height);
    cairo_clip(context_.get());
}

void Canvas::resetClip() {
    cairo_reset_clip(context_.get());
}

Result<std::vector<std::byte>> Canvas::png() const {
    std::vector<std::byte> bytes;
    cairo_status_t status = cairo_status(context_.get());
    if (status == CAIRO_STATUS_SUCCESS)
        status = cairo_surface_write_to_png_stream(surface_.get(), append, &bytes);
    if (status == CAIRO_STATUS_SUCCESS) return bytes;
    return Failure{cairo_status_to_string(status)};
}

} // namespace zephyra
