#include "cli/terminal/shell_line.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <string_view>

namespace zephyra {

namespace {

// A line end alone would be lost at the end of what a shell takes from a command.
constexpr std::string_view kLineEnd = "${nl%.}";
constexpr std::string_view kLineEndIs = R"(nl=$(printf '\n.') && )";

/// Means itself, also for shells that know more than POSIX.
bool isPlain(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
           std::string_view("_-./,:+@=").find(c) != std::string_view::npos;
}

bool isControl(char c) {
    return static_cast<unsigned char>(c) < 0x20 || c == 0x7F;
}

/// What stands for c between single quotes.
std::string quoted(char c) {
    if (c == '\'') return R"('\'')";
    if (c == '\n') return "'\"" + std::string(kLineEnd) + "\"'";
    if (!isControl(c)) return {c};
    char escape[24];
    std::snprintf(escape, sizeof escape, R"~('"$(printf '\%03o')"')~", static_cast<unsigned>(c));
    return escape;
}

/// A program's name with a "=" would be an assignment; zsh looks for programs behind one in front.
bool isBare(const std::string& word, bool isProgram) {
    const std::size_t sign = word.find('=');
    return !word.empty() && std::ranges::all_of(word, isPlain) && sign != 0 &&
           !(isProgram && sign != std::string::npos);
}

std::string shellWord(const std::string& word, bool isProgram) {
    if (isBare(word, isProgram)) return word;
    std::string text = "'";
    for (const char c : word) text += quoted(c);
    return text + "'";
}

} // namespace

std::string shellLine(const std::vector<ShellCommand>& commands) {
    std::string line;
    for (const ShellCommand& command : commands) {
        std::string words;
        for (const std::string& word : command)
            words += (words.empty() ? "" : " ") + shellWord(word, words.empty());
        line += (line.empty() ? "" : " && ") + words;
    }
    return (line.find(kLineEnd) == std::string::npos ? "" : std::string(kLineEndIs)) + line;
}

} // namespace zephyra
