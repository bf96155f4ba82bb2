// ContactSheet: the pictures of many renders on one page, each with its name.
#pragma once

#include "pictures/cairo/picture_canvas.h"

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

namespace zephyra {

struct ContactSheetEntry {
    std::string title;             ///< cut where it is too long
    std::string detail;            ///< a line in smaller type
    std::filesystem::path picture; ///< a PNG
    std::string failure = {};      ///< why there is no picture; empty: there is one
};

/// A grid that is about as wide as tall, read line by line. MAIN.
class ContactSheet {
public:
    /// heading stands at the top.
    ContactSheet(std::string heading, std::vector<ContactSheetEntry> entries);

    /// Pixels of the canvas to draw on; at most kMostPixels either way, however many entries.
    int width() const { return width_; }
    int height() const { return height_; }
    static constexpr int kMostPixels = 20000;

    void draw(Canvas& canvas) const;

private:
    Box place(std::size_t entry) const;
    void drawEntry(Canvas& canvas, const Box& box, const ContactSheetEntry& entry) const;

    std::string heading_;
    std::vector<ContactSheetEntry> entries_;
    std::size_t columns_;
    double thumbWidth_; // pixels; the rest of the page is as large whatever the pictures
    int width_ = 0, height_ = 0;
};

} // namespace zephyra
