#include "screens/draw/span_image.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <utility>

namespace zephyra {

namespace {

using Bitmap = juce::Image::BitmapData;

juce::PixelARGB& pixelAt(const Bitmap& bitmap, int x, int y) {
    return *reinterpret_cast<juce::PixelARGB*>(bitmap.getPixelPointer(x, y));
}

float covered(float top, float bottom, int y) {
    return std::min(bottom, static_cast<float>(y + 1)) - std::max(top, static_cast<float>(y));
}

/// colour on a pixel of which share is covered.
void lay(juce::PixelARGB& pixel, const juce::PixelARGB& colour, float share) {
    if (share >= 1.0f)
        pixel.blend(colour);
    else if (share > 0.0f)
        pixel.blend(colour, static_cast<juce::uint32>(share * 256.0f));
}

struct Columns {
    const int *first, *last, *fill; // rows
};

// Without __restrict, columns would be read again after each pixel, and not many taken at once.
void selectRow(std::uint32_t* __restrict to, const std::uint32_t* __restrict above,
               const std::uint32_t* __restrict below, std::uint32_t trace, int y, int count,
               const Columns& columns) {
    const int* __restrict const first = columns.first;
    const int* __restrict const last = columns.last;
    const int* __restrict const fill = columns.fill;
    for (int i = 0; i < count; ++i) {
        const std::uint32_t isBelow = y >= fill[i] ? ~0u : 0u;
        const std::uint32_t isTrace = y >= first[i] ? (y < last[i] ? ~0u : 0u) : 0u;
        const std::uint32_t behind = (below[i] & isBelow) | (above[i] & ~isBelow);
        to[i] = (trace & isTrace) | (behind & ~isTrace);
    }
}

} // namespace

void SpanImage::setSize(int width, int height) {
    ground_ = opaqueImage(width, height);
    juce::Graphics(ground_).fillAll(juce::Colours::black);
    spans_.resize(static_cast<std::size_t>(ground_.getWidth()));
    changed_.resize(spans_.size() / kBlock + 1);
    dirty_.setArea(ground_.getWidth(), ground_.getHeight());
}

void SpanImage::begin(juce::Colour trace, juce::Colour fill) {
    trace_ = trace.getPixelARGB();
    fill_ = fill.getPixelARGB();
    image_ = ground_.createCopy();
    filled_ = ground_.createCopy();
    juce::Graphics(filled_).fillAll(fill);
    std::fill(spans_.begin(), spans_.end(), nothing());
    std::fill(changed_.begin(), changed_.end(), Rows{height(), 0});
}

SpanImage::Span SpanImage::nothing() const {
    const auto below = static_cast<float>(height());
    return {below, below, below};
}

int SpanImage::row(float y) const {
    return static_cast<int>(std::clamp(y, 0.0f, static_cast<float>(height())));
}

/// Above those a column is the ground, and filled below.
SpanImage::Rows SpanImage::touched(const Span& span) const {
    return {row(std::min(span.top, span.fill)), row(std::ceil(std::max(span.bottom, span.fill)))};
}

/// Those that the trace covers wholly.
SpanImage::Rows SpanImage::whole(const Span& span) const {
    return {row(std::ceil(span.top)), row(span.bottom)};
}

void SpanImage::show(int x, const Span& span) {
    Span& shown = spans_[static_cast<std::size_t>(x)];
    if (shown == span) return;
    const Rows now = touched(span), then = touched(shown);
    Rows& changed = changed_[static_cast<std::size_t>(x / kBlock)];
    changed = {std::min({changed.first, now.first, then.first}),
               std::max({changed.last, now.last, then.last})};
    shown = span;
}

void SpanImage::clear() {
    for (int x = 0; x < width(); ++x) show(x, nothing());
}

const std::vector<Box>& SpanImage::draw() {
    for (std::size_t i = 0; i < changed_.size(); ++i) {
        const Rows rows = std::exchange(changed_[i], {height(), 0});
        if (rows.first >= rows.last) continue;
        const int left = static_cast<int>(i) * kBlock, right = std::min(left + kBlock, width());
        drawBlock(left, right, rows);
        drawEnds(left, right, rows);
        dirty_.add({left, rows.first, right - left, rows.last - rows.first});
    }
    return dirty_.take();
}

/// Whole pixels, a row at a time: a column's lie far apart in memory.
void SpanImage::drawBlock(int left, int right, const Rows& rows) {
    const Bitmap ground(ground_, Bitmap::readOnly), filled(filled_, Bitmap::readOnly);
    const Bitmap image(image_, Bitmap::readWrite);
    std::array<int, kBlock> first{}, last{}, fill{};
    const int count = right - left;
    for (int i = 0; i < count; ++i) {
        const auto at = static_cast<std::size_t>(i);
        const Span& span = spans_[static_cast<std::size_t>(left + i)];
        const Rows covered = whole(span);
        first[at] = covered.first;
        last[at] = covered.last;
        fill[at] = row(std::ceil(span.fill));
    }
    const std::uint32_t trace = trace_.getNativeARGB();
    const auto pixels = [&](const Bitmap& of, int y) {
        return reinterpret_cast<std::uint32_t*>(of.getPixelPointer(left, y));
    };
    for (int y = rows.first; y < rows.last; ++y) {
        const Columns columns{first.data(), last.data(), fill.data()};
        selectRow(pixels(image, y), pixels(ground, y), pixels(filled, y), trace, y, count, columns);
    }
}

/// The pixels that are covered in part.
void SpanImage::drawEnds(int left, int right, const Rows& rows) {
    const Bitmap ground(ground_, Bitmap::readOnly), filled(filled_, Bitmap::readOnly);
    const Bitmap image(image_, Bitmap::readWrite);
    const auto most = static_cast<float>(height());
    for (int x = left; x < right; ++x) {
        const Span& span = spans_[static_cast<std::size_t>(x)];
        for (const float end : {span.top, span.fill, span.bottom}) {
            const int y = static_cast<int>(std::clamp(end, -1.0f, most));
            if (y < rows.first || y >= rows.last) continue;
            juce::PixelARGB& pixel = pixelAt(image, x, y);
            const float below = covered(span.fill, most, y);
            pixel = pixelAt(below >= 1.0f ? filled : ground, x, y);
            if (below < 1.0f) lay(pixel, fill_, below);
            lay(pixel, trace_, covered(span.top, span.bottom, y));
        }
    }
}

} // namespace zephyra
