#include "screens/draw/span_image.h"

#include <cstring>

namespace zephyra {

namespace {

juce::Image made(int width, int height) {
    return juce::Image(juce::Image::RGB, juce::jmax(1, width), juce::jmax(1, height), true,
                       juce::SoftwareImageType());
}

void copy(juce::Image& from, juce::Image::BitmapData& to) {
    const juce::Image::BitmapData source(from, juce::Image::BitmapData::readOnly);
    for (int y = 0; y < to.height; ++y)
        std::memcpy(to.getLinePointer(y), source.getLinePointer(y),
                    static_cast<std::size_t>(to.width * to.pixelStride));
}

} // namespace

void SpanImage::setSize(int width, int height) {
    if (image_.isValid() && width == image_.getWidth() && height == image_.getHeight()) return;
    ground_ = made(width, height);
    image_ = made(width, height);
}

SpanImage::Pen::Pen(SpanImage& picture)
    : pixels_(picture.image_, juce::Image::BitmapData::readWrite) {
    copy(picture.ground_, pixels_);
}

void SpanImage::Pen::fill(int x, float top, float bottom, juce::Colour colour) {
    top = juce::jmax(top, 0.0f);
    bottom = juce::jmin(bottom, static_cast<float>(pixels_.height));
    if (x < 0 || x >= pixels_.width || !(top < bottom)) return;
    const juce::PixelARGB whole = colour.getPixelARGB();
    const int first = static_cast<int>(top), last = static_cast<int>(std::ceil(bottom)) - 1;
    auto* pixel = pixels_.getPixelPointer(x, first);
    for (int y = first; y <= last; ++y, pixel += pixels_.lineStride) {
        const float covered =
            juce::jmin(bottom, static_cast<float>(y + 1)) - juce::jmax(top, static_cast<float>(y));
        auto* const over = reinterpret_cast<juce::PixelRGB*>(pixel);
        if (covered >= 1.0f)
            over->blend(whole);
        else
            over->blend(whole, static_cast<juce::uint32>(covered * 256.0f));
    }
}

} // namespace zephyra
