#include "cli/help_text.h"

#include <cstddef>

namespace zephyra {

namespace {

constexpr std::size_t kColumns = 80;

/// Line ends instead of the blanks after which a word would reach beyond width.
std::string wrapped(std::string text, std::size_t width) {
    std::size_t start = 0;
    while (text.size() - start > width) {
        const std::size_t blank = text.rfind(' ', start + width);
        if (blank == std::string::npos || blank <= start) break; // one long word
        text[blank] = '\n';
        start = blank + 1;
    }
    return text;
}

} // namespace

std::string HelpText::make_option_desc(const CLI::Option* option) const {
    return wrapped(CLI::Formatter::make_option_desc(option), kColumns - get_column_width());
}

std::string HelpText::make_option_usage(const CLI::Option* option) const {
    const std::string usage = CLI::Formatter::make_option_usage(option);
    const std::size_t count = usage.find("x)");
    return count == std::string::npos ? usage : usage.substr(0, usage.rfind('(', count));
}

} // namespace zephyra
