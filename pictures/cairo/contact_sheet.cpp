#include "pictures/cairo/contact_sheet.h"

#include "pictures/cairo/picture_canvas.h"

#include <algorithm>
#include <cmath>
#include <span>
#include <utility>

namespace zephyra {

namespace {

// The page, in pixels.
constexpr double kMargin = 28, kGap = 24, kHeading = 72;
constexpr double kLabel = 62;       // below a picture: a title and a line, or three
constexpr double kCellShape = 0.66; // height over width of a picture
constexpr double kWidestCell = 420, kNarrowestCell = 40;
constexpr std::size_t kFewestColumns = 3; // so that a heading has room

const TextStyle kTitle = {.colour = theme::title, .size = 16.5, .weight = TextWeight::bold};
const TextStyle kLongTitle = {.colour = theme::title, .size = 13, .weight = TextWeight::bold};
const TextStyle kDetail = {.colour = theme::faintText, .size = 13};

double pictureHeight(double cellWidth) {
    return std::floor(cellWidth * kCellShape);
}

/// How many bytes of text go on one line: up to a blank where there is one.
std::size_t lineLength(Canvas& canvas, const std::string& text, double width,
                       const TextStyle& style) {
    constexpr std::size_t kMostBytes = 400; // more than any line has room for
    std::size_t end = std::min(text.size(), kMostBytes);
    while (end > 1 && canvas.textWidth(text.substr(0, end), style) > width) do
            --end;
        while (end > 1 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80);
    if (end == text.size()) return end;
    const std::size_t blank = text.rfind(' ', end);
    return blank == std::string::npos || blank == 0 ? end : blank;
}

/// As many lines as fit.
void drawWrapped(Canvas& canvas, const Box& box, const std::string& text, const TextStyle& style) {
    const double line = std::round(style.size * 1.35);
    std::string rest = text;
    for (double y = box.y + line; y < box.bottom() && !rest.empty(); y += line) {
        const bool last = y + line >= box.bottom();
        const std::size_t end = lineLength(canvas, rest, box.width, style);
        canvas.text(box.x, y, last ? canvas.fitted(rest, box.width, style) : rest.substr(0, end),
                    style);
        rest.erase(0, end + (end < rest.size() && rest[end] == ' ' ? 1 : 0));
    }
}

} // namespace

ContactSheet::Grid ContactSheet::gridFor(std::size_t count) {
    const double cells = static_cast<double>(std::max<std::size_t>(count, 1));
    const std::size_t columns =
        std::max(static_cast<std::size_t>(std::ceil(std::sqrt(cells * 0.8))), kFewestColumns);
    const double across = static_cast<double>(columns), down = std::ceil(cells / across);
    const auto sized = [&](double cell) {
        return Grid{columns, cell, 2 * kMargin + across * (cell + kGap) - kGap,
                    kHeading + down * (pictureHeight(cell) + kLabel + kGap) + kMargin - kGap};
    };
    Grid grid = sized(kWidestCell);
    while (std::max(grid.width, grid.height) > kMostPixels && grid.cellWidth > kNarrowestCell)
        grid = sized(std::max(std::floor(grid.cellWidth * 0.9), kNarrowestCell));
    grid.width = std::min(grid.width, double{kMostPixels});
    grid.height = std::min(grid.height, double{kMostPixels});
    return grid;
}

CellSize ContactSheet::cellSize(std::size_t count) {
    const double width = gridFor(count).cellWidth;
    return {static_cast<int>(width), static_cast<int>(pictureHeight(width))};
}

ContactSheet::ContactSheet(std::string heading, std::vector<ContactSheetEntry> entries)
    : heading_(std::move(heading)), entries_(std::move(entries)), grid_(gridFor(entries_.size())) {}

Box ContactSheet::place(std::size_t entry) const {
    const double column = static_cast<double>(entry % grid_.columns);
    const double row = static_cast<double>(entry / grid_.columns);
    const double width = grid_.cellWidth, height = pictureHeight(width);
    return {kMargin + column * (width + kGap), kHeading + row * (height + kLabel + kGap), width,
            height};
}

void ContactSheet::drawEntry(Canvas& canvas, const Box& box, const ContactSheetEntry& entry) const {
    const bool failed = !entry.failure.empty();
    TextStyle title = kTitle, longTitle = kLongTitle, detail = kDetail;
    if (failed) {
        title.colour = longTitle.colour = detail.colour = theme::warning;
        canvas.fill(box, theme::warning.faded(0.12));
        drawWrapped(canvas, {box.x + 14, box.y + 10, box.width - 28, box.height - 20},
                    entry.failure, {.colour = theme::text});
    } else {
        canvas.fill(box, theme::panel);
        canvas.picture(box.x, box.y, std::as_bytes(std::span(entry.picture)));
    }
    canvas.outline(box, failed ? theme::warning : theme::frame);

    const bool fits = canvas.textWidth(entry.title, title) <= box.width;
    if (fits)
        canvas.text(box.x, box.bottom() + 24, entry.title, title);
    else
        drawWrapped(canvas, {box.x, box.bottom() + 2, box.width, 37}, entry.title, longTitle);
    canvas.text(box.x, box.bottom() + (fits ? 44 : 57),
                canvas.fitted(failed ? "failed" : entry.detail, box.width, detail), detail);
}

void ContactSheet::draw(Canvas& canvas) const {
    const TextStyle heading = {
        .colour = theme::title, .size = theme::titleSize, .weight = TextWeight::bold};
    canvas.text(kMargin, 45, canvas.fitted(heading_, grid_.width - 2 * kMargin - 120, heading),
                heading);
    canvas.text(grid_.width - kMargin, 45, "Zephyra",
                {.colour = theme::faintText, .size = 17, .anchor = TextAnchor::right});
    for (std::size_t i = 0; i < entries_.size(); ++i) drawEntry(canvas, place(i), entries_[i]);
}

} // namespace zephyra
