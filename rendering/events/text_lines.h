// TextLines: a text file's lines that say something, one by one.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace zephyra {

/// Skips the byte order mark that spreadsheets write, empty lines and those that begin with #. A
/// view of the text, which must outlive this.
class TextLines {
public:
    explicit TextLines(std::string_view text);
    /// The next line without the blanks at its ends; none after the last.
    std::optional<std::string_view> next();
    /// Of the line that next() returned, from 1.
    std::size_t number() const noexcept { return number_; }

private:
    std::string_view rest_;
    std::size_t number_ = 0;
};

} // namespace zephyra
