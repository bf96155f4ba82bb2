// DirtyBoxes: what changed of an area, as a few rectangles.
#pragma once

#include "screens/model/screen_layout.h"

#include <cstddef>
#include <vector>

namespace zephyra {

/// Rectangles are merged with what lies near: each costs a little by itself, so that a few larger
/// ones beat many exact ones. Nothing is allocated once it has its size. Message thread.
class DirtyBoxes {
public:
    static constexpr std::size_t kMost = 40;

    DirtyBoxes();

    /// Forgets what was gathered.
    void setArea(int width, int height);

    /// What lies outside the area is cut off.
    void add(const Box& box);
    bool isEmpty() const noexcept { return boxes_.empty(); }
    /// Rectangles that cover all that was added, and forgets it.
    const std::vector<Box>& take();

private:
    void mergeCheapest();

    int width_ = 0, height_ = 0;
    long worth_ = 0; // pixels that cost as much as one rectangle
    std::vector<Box> boxes_, taken_;
};

} // namespace zephyra
