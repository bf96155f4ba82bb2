// TextTable: rows of cells as lines of a terminal.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace zephyra {

/// Every column is as wide as its widest cell that has another behind it, up to kMostColumn
/// characters; a longer cell pushes the rest of its own line only. Cells are brought on one line.
/// MAIN.
class TextTable {
public:
    static constexpr std::size_t kMostColumn = 40;

    void addRow(std::vector<std::string> cells);
    bool isEmpty() const { return rows_.empty(); }
    /// A line each, with line ends.
    std::string text() const;

private:
    std::vector<std::vector<std::string>> rows_;
};

} // namespace zephyra
