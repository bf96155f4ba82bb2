// DirtyBoxes: what changed of an area, as a few rectangles.
#pragma once

#include "screens/model/screen_layout.h"

#include <cstddef>
#include <vector>

namespace zephyra {

/// Rectangles are gathered on a coarse grid and come out merged: each costs a little by itself, so
/// that a few larger ones beat many exact ones. Nothing is allocated once it has the area's size.
/// Message thread.
class DirtyBoxes {
public:
    static constexpr std::size_t kMost = 16;

    /// Cells of so many pixels; forgets what was gathered.
    void setArea(int width, int height, int cellWidth, int cellHeight);

    /// What lies outside the area is cut off.
    void add(const Box& box);
    bool isEmpty() const noexcept { return isEmpty_; }
    /// Rectangles that cover all that was added, and forgets it.
    const std::vector<Box>& take();

private:
    void collectRuns();
    void mergeCheapest();

    int width_ = 0, height_ = 0, cellWidth_ = 1, cellHeight_ = 1, across_ = 0, down_ = 0;
    std::vector<unsigned char> cells_;
    std::vector<Box> boxes_;
    bool isEmpty_ = true;
};

} // namespace zephyra
