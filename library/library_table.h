// LibraryTable: a table of banks, presets or samples as data that a screen draws.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace zephyra {

/// Components 0..1.
struct TableColour {
    float red, green, blue, alpha = 1.0f;
    bool operator==(const TableColour&) const = default;
};

enum class TableFont { plain, bold, italic };

struct TableRow {
    std::string title;
    std::string detail = {};
    TableFont font = TableFont::plain;
    std::string image = {};       ///< name of a picture; empty: none
    std::string renameImage = {}; ///< of the rename button, 40 x 40; empty: no button
    bool operator==(const TableRow&) const = default;
};

struct TableSection {
    std::string header;
    std::vector<TableRow> rows = {};
};

/// One table. Written by its manager, read by screens and tests. MAIN.
struct LibraryTable {
    std::vector<TableSection> sections;
    struct Place {
        std::size_t section = 0, row = 0;
        bool operator==(const Place&) const = default;
    };
    std::optional<Place> selected = {}; ///< highlighted and scrolled to the middle
    TableColour highlight = {0, 0, 1, 0.25f};
    int fontSize = 14; ///< points
    bool editing = false;
    std::uint64_t reloads = 0; ///< grows when the rows are others
};

} // namespace zephyra
