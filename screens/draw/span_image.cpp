#include "screens/draw/span_image.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>

namespace zephyra {

namespace {

using Bitmap = juce::Image::BitmapData;

const juce::PixelARGB& pixelAt(const Bitmap& bitmap, int x, int y) {
    return *reinterpret_cast<const juce::PixelARGB*>(bitmap.getPixelPointer(x, y));
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
    for (auto* const rows : {&first_, &last_, &filledFrom_}) rows->resize(spans_.size());
    changed_.resize(spans_.size() / kBlock + 1);
    dirty_.setArea(ground_.getWidth(), ground_.getHeight());
}

void SpanImage::begin(juce::Colour trace, juce::Colour fill) {
    trace_ = trace.getPixelARGB();
    fill_ = fill.getPixelARGB();
    filled_ = ground_.createCopy();
    juce::Graphics(filled_).fillAll(fill);
    picture_ = {};
    for (std::size_t x = 0; x < spans_.size(); ++x) setRows(x, nothing());
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

/// Those that the trace covers wholly, and from which on all is filled.
void SpanImage::setRows(std::size_t x, const Span& span) {
    spans_[x] = span;
    first_[x] = row(std::ceil(span.top));
    last_[x] = row(span.bottom);
    filledFrom_[x] = row(std::ceil(span.fill));
}

void SpanImage::show(int x, const Span& span) {
    const Span& shown = spans_[static_cast<std::size_t>(x)];
    if (shown == span) return;
    const Rows now = touched(span), then = touched(shown);
    Rows& changed = changed_[static_cast<std::size_t>(x / kBlock)];
    changed = {std::min({changed.first, now.first, then.first}),
               std::max({changed.last, now.last, then.last})};
    setRows(static_cast<std::size_t>(x), span);
}

void SpanImage::clear() {
    for (int x = 0; x < width(); ++x) show(x, nothing());
}

const std::vector<Box>& SpanImage::takeChanges() {
    for (std::size_t i = 0; i < changed_.size(); ++i) {
        const Rows rows = std::exchange(changed_[i], {height(), 0});
        const int left = static_cast<int>(i) * kBlock, right = std::min(left + kBlock, width());
        if (rows.first < rows.last)
            dirty_.add({left, rows.first, right - left, rows.last - rows.first});
    }
    return dirty_.take();
}

void SpanImage::paint(juce::Graphics& graphics) {
    const OpaqueTarget target(graphics);
    const auto paintInto = [this](const PixelRows& into, const juce::Rectangle<int>& wanted) {
        const auto part = wanted.getIntersection(ground_.getBounds());
        if (!part.isEmpty())
            paint(into, {part.getX(), part.getY(), part.getWidth(), part.getHeight()});
    };
    if (target) {
        for (const auto& rectangle : target.clip()) paintInto(target.rows(), rectangle);
        return;
    }
    if (picture_.isNull()) picture_ = opaqueImage(width(), height());
    paintInto(PixelRows(Bitmap(picture_, Bitmap::readWrite)), graphics.getClipBounds());
    graphics.drawImageAt(picture_, 0, 0);
}

/// Whole pixels, a row at a time: a column's lie far apart in memory.
void SpanImage::paint(const PixelRows& rows, const Box& part) const {
    const Bitmap ground(ground_, Bitmap::readOnly), filled(filled_, Bitmap::readOnly);
    const auto left = static_cast<std::size_t>(part.x);
    const Columns columns{&first_[left], &last_[left], &filledFrom_[left]};
    const auto from = [&](const Bitmap& of, int y) {
        return reinterpret_cast<const std::uint32_t*>(of.getPixelPointer(part.x, y));
    };
    for (int y = part.y; y < part.bottom(); ++y)
        selectRow(rows.row(y) + part.x, from(ground, y), from(filled, y), trace_.getNativeARGB(), y,
                  part.width, columns);
    paintEnds(rows, part);
}

/// The pixels that are covered in part.
void SpanImage::paintEnds(const PixelRows& rows, const Box& part) const {
    const Bitmap ground(ground_, Bitmap::readOnly), filled(filled_, Bitmap::readOnly);
    const auto most = static_cast<float>(height());
    for (int x = part.x; x < part.right(); ++x) {
        const Span& span = spans_[static_cast<std::size_t>(x)];
        for (const float end : {span.top, span.fill, span.bottom}) {
            const int y = static_cast<int>(std::clamp(end, -1.0f, most));
            if (y < part.y || y >= part.bottom()) continue;
            juce::PixelARGB& pixel = rows.at(x, y);
            const float below = covered(span.fill, most, y);
            pixel = pixelAt(below >= 1.0f ? filled : ground, x, y);
            if (below < 1.0f) lay(pixel, fill_, below);
            lay(pixel, trace_, covered(span.top, span.bottom, y));
        }
    }
}

} // namespace zephyra
