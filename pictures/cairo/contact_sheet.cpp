#include "pictures/cairo/contact_sheet.h"

#include "pictures/cairo/picture_canvas.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace zephyra {

namespace {

// The page, in pixels.
constexpr double kMargin = 28, kGap = 24, kHeading = 72;
constexpr double kLabel = 58;                   // below a picture: two lines
constexpr double kPictureShape = 1100.0 / 1600; // height over width of a render's picture
constexpr double kWidestThumb = 420, kNarrowestThumb = 40;
constexpr std::size_t kFewestColumns = 3; // so that a heading has room

const TextStyle kTitle = {.colour = theme::title, .size = 16.5, .weight = TextWeight::bold};
const TextStyle kDetail = {.colour = theme::faintText, .size = 13};

double cellHeight(double thumbWidth) {
    return thumbWidth * kPictureShape + kLabel + kGap;
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
    constexpr double kLine = 19;
    std::string rest = text;
    for (double y = box.y + kLine; y < box.bottom() && !rest.empty(); y += kLine) {
        const bool last = y + kLine >= box.bottom();
        const std::size_t end = lineLength(canvas, rest, box.width, style);
        canvas.text(box.x, y, last ? canvas.fitted(rest, box.width, style) : rest.substr(0, end),
                    style);
        rest.erase(0, end + (end < rest.size() && rest[end] == ' ' ? 1 : 0));
    }
}

} // namespace

ContactSheet::ContactSheet(std::string heading, std::vector<ContactSheetEntry> entries)
    : heading_(std::move(heading)), entries_(std::move(entries)), thumbWidth_(kWidestThumb) {
    const double count = static_cast<double>(std::max<std::size_t>(entries_.size(), 1));
    columns_ =
        std::max(static_cast<std::size_t>(std::ceil(std::sqrt(count * 0.8))), kFewestColumns);
    const double columns = static_cast<double>(columns_), rows = std::ceil(count / columns);
    const auto wide = [&] { return 2 * kMargin + columns * (thumbWidth_ + kGap) - kGap; };
    const auto tall = [&] { return kHeading + rows * cellHeight(thumbWidth_) + kMargin - kGap; };
    while (std::max(wide(), tall()) > kMostPixels && thumbWidth_ > kNarrowestThumb)
        thumbWidth_ = std::max(thumbWidth_ * 0.9, kNarrowestThumb);
    width_ = static_cast<int>(std::min(std::ceil(wide()), double{kMostPixels}));
    height_ = static_cast<int>(std::min(std::ceil(tall()), double{kMostPixels}));
}

Box ContactSheet::place(std::size_t entry) const {
    const double column = static_cast<double>(entry % columns_);
    const double row = static_cast<double>(entry / columns_);
    return {kMargin + column * (thumbWidth_ + kGap), kHeading + row * cellHeight(thumbWidth_),
            thumbWidth_, thumbWidth_ * kPictureShape};
}

void ContactSheet::drawEntry(Canvas& canvas, const Box& box, const ContactSheetEntry& entry) const {
    const bool failed = !entry.failure.empty();
    const auto fitted = [&](const std::string& text, const TextStyle& style) {
        return canvas.fitted(text, box.width, style);
    };
    canvas.fill(box, failed ? theme::warning.faded(0.12) : theme::panel);
    TextStyle title = kTitle, detail = kDetail;
    if (failed) {
        title.colour = detail.colour = theme::warning;
        drawWrapped(canvas, {box.x + 14, box.y + 10, box.width - 28, box.height - 20},
                    entry.failure, {.colour = theme::text});
    } else {
        canvas.picture(box, entry.picture);
    }
    canvas.outline(box, failed ? theme::warning : theme::frame);
    canvas.text(box.x, box.bottom() + 24, fitted(entry.title, title), title);
    canvas.text(box.x, box.bottom() + 44, fitted(failed ? "failed" : entry.detail, detail), detail);
}

void ContactSheet::draw(Canvas& canvas) const {
    const TextStyle heading = {
        .colour = theme::title, .size = theme::titleSize, .weight = TextWeight::bold};
    canvas.text(kMargin, 45, canvas.fitted(heading_, width_ - 2 * kMargin - 120, heading), heading);
    canvas.text(width_ - kMargin, 45, "Zephyra",
                {.colour = theme::faintText, .size = 17, .anchor = TextAnchor::right});
    for (std::size_t i = 0; i < entries_.size(); ++i) drawEntry(canvas, place(i), entries_[i]);
}

} // namespace zephyra
