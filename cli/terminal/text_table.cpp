#include "cli/terminal/text_table.h"

#include "platform/text/message_text.h"
#include "platform/text/text_numbers.h"

#include <algorithm>

namespace zephyra {

namespace {

std::size_t charactersOf(const std::string& text) {
    return static_cast<std::size_t>(std::count_if(
        text.begin(), text.end(), [](unsigned char byte) { return (byte & 0xC0) != 0x80; }));
}

std::string withoutBlanksBehind(std::string line) {
    line.erase(line.find_last_not_of(' ') + 1);
    return line;
}

} // namespace

void TextTable::addRow(std::vector<std::string> cells) {
    for (std::string& cell : cells) cell = onOneLine(cell);
    rows_.push_back(std::move(cells));
}

std::string TextTable::text() const {
    std::vector<std::size_t> widths;
    for (const auto& row : rows_)
        for (std::size_t i = 0; i + 1 < row.size(); ++i) {
            if (i == widths.size()) widths.push_back(0);
            widths[i] = std::max(widths[i], std::min(charactersOf(row[i]), kMostColumn));
        }
    std::string text;
    for (const auto& row : rows_) {
        std::string line;
        for (std::size_t i = 0; i < row.size(); ++i)
            line += i < widths.size() ? padded(row[i], widths[i] + 2) : row[i];
        text += withoutBlanksBehind(std::move(line)) + "\n";
    }
    return text;
}

} // namespace zephyra
