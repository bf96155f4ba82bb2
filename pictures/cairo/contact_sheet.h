// ContactSheet: the pictures of many renders on one page, each with its name.
#pragma once

#include "pictures/cairo/picture_canvas.h"

#include <cstddef>
#include <string>
#include <vector>

namespace zephyra {

struct CellSize {
    int width, height; ///< pixels
};

struct ContactSheetEntry {
    std::string title;        ///< on two lines where it is long
    std::string detail;       ///< a line in smaller type
    std::string picture = {}; ///< the bytes of a PNG of the sheet's cellSize
    std::string failure = {}; ///< why there is none; empty: there is one
};

/// A grid that is about as wide as tall, read line by line. MAIN.
class ContactSheet {
public:
    /// Of the pictures on a sheet of so many.
    static CellSize cellSize(std::size_t count);

    /// heading stands at the top.
    ContactSheet(std::string heading, std::vector<ContactSheetEntry> entries);

    /// Pixels of the canvas to draw on; at most kMostPixels either way, however many entries.
    int width() const { return static_cast<int>(grid_.width); }
    int height() const { return static_cast<int>(grid_.height); }
    static constexpr int kMostPixels = 20000;

    void draw(Canvas& canvas) const;

private:
    /// How the cells stand.
    struct Grid {
        std::size_t columns;
        double cellWidth;     ///< pixels; the rest of the page is as large whatever the pictures
        double width, height; ///< of the page
    };
    static Grid gridFor(std::size_t count);
    Box place(std::size_t entry) const;
    void drawEntry(Canvas& canvas, const Box& box, const ContactSheetEntry& entry) const;

    std::string heading_;
    std::vector<ContactSheetEntry> entries_;
    Grid grid_;
};

} // namespace zephyra
