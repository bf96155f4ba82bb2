// PixelRows: where rows of opaque pixels lie that are written as they are.
#pragma once

#include "screens/model/screen_layout.h"

#include <juce_graphics/juce_graphics.h>

#include <cstddef>
#include <cstdint>

namespace zephyra {

/// Pixels of four bytes, as JUCE's windows have them: alpha, red, green, blue from the highest byte
/// down. Whoever has them is told of a box in which they may be touched; row 0 and column 0 need
/// not be there. Plain data; what it points to lives elsewhere.
struct PixelRows {
    std::uintptr_t first = 0;  ///< where (0, 0) is, or would be
    std::ptrdiff_t stride = 0; ///< bytes from a row to the next

    PixelRows() = default;
    /// origin: where (0, 0) stands in data.
    explicit PixelRows(const juce::Image::BitmapData& data, juce::Point<int> origin = {})
        : first(reinterpret_cast<std::uintptr_t>(data.data) +
                static_cast<std::uintptr_t>(origin.y * std::ptrdiff_t{data.lineStride} +
                                            origin.x * std::ptrdiff_t{data.pixelStride})),
          stride(data.lineStride) {
        jassert(data.pixelFormat == juce::Image::ARGB && data.pixelStride == sizeof(std::uint32_t));
    }
    /// Rows of box alone, one after the other from data on.
    PixelRows(void* data, const Box& box, std::ptrdiff_t bytes)
        : first(reinterpret_cast<std::uintptr_t>(data) -
                static_cast<std::uintptr_t>(box.y * bytes +
                                            box.x * std::ptrdiff_t{sizeof(std::uint32_t)})),
          stride(bytes) {}

    std::uint32_t* row(int y) const {
        return reinterpret_cast<std::uint32_t*>(first + static_cast<std::uintptr_t>(y * stride));
    }
    juce::PixelARGB& at(int x, int y) const {
        return *reinterpret_cast<juce::PixelARGB*>(row(y) + x);
    }
};

} // namespace zephyra
