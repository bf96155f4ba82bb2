#include "rendering/events/text_lines.h"

#include "platform/files/file_name.h"

namespace zephyra {

TextLines::TextLines(std::string_view text) : rest_(text) {
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    if (rest_.starts_with(kByteOrderMark)) rest_.remove_prefix(kByteOrderMark.size());
}

std::optional<std::string_view> TextLines::next() {
    while (!rest_.empty()) {
        const std::size_t end = rest_.find('\n');
        const std::string_view line = trimmed(rest_.substr(0, end));
        rest_.remove_prefix(end == std::string_view::npos ? rest_.size() : end + 1);
        ++number_;
        if (!line.empty() && line.front() != '#') return line;
    }
    return std::nullopt;
}

} // namespace zephyra
