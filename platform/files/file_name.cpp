#include "platform/files/file_name.h"

#include "platform/files/folder_entries.h"
#include "platform/text/characters.h"
#include "platform/text/text_numbers.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <optional>
#include <system_error>
#include <utf8proc.h>

namespace zephyra {

namespace {

bool isWhiteSpace(std::int32_t code) {
    if (code < 0) return false;
    if ((code >= '\t' && code <= '\r') || code == 0x85) return true;
    const auto category = utf8proc_category(code);
    return category == UTF8PROC_CATEGORY_ZS || category == UTF8PROC_CATEGORY_ZL ||
           category == UTF8PROC_CATEGORY_ZP;
}

constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();

/// The whole number that text begins with behind its blanks; 0 without one, kMost when larger.
std::int64_t leadingNumber(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t\n\v\f\r"), text.size()));
    std::int64_t number = 0;
    for (const char c : text) {
        if (c < '0' || c > '9') break;
        const int digit = c - '0';
        number = number > (kMost - digit) / 10 ? kMost : number * 10 + digit;
    }
    return number;
}

/// The number between the first and the second base in name.
std::int64_t numberBehind(std::string_view base, std::string_view name) {
    const std::size_t found = name.find(base);
    if (base.empty() || found == std::string_view::npos) return 0;
    name.remove_prefix(found + base.size());
    return leadingNumber(name.substr(0, name.find(base)));
}

} // namespace

bool isFileName(std::string_view text) {
    if (text.empty() || text.size() > kMostFileNameBytes || text == "." || text == "..")
        return false;
    while (!text.empty()) {
        const Character next = firstCharacter(text);
        if (!next.isPlain() || next.code == '/') return false;
        text.remove_prefix(next.bytes);
    }
    return true;
}

bool isFileNameWithoutExtension(std::string_view text) {
    return isFileName(text) && isFileName(stemOf(text));
}

std::string percentDecoded(std::string_view text) {
    std::string decoded;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte =
            text[i] == '%' ? parseHexByte(text.substr(i + 1, 2)) : std::optional<char>();
        decoded += byte.value_or(text[i]);
        if (byte) i += 2;
    }
    return decoded;
}

std::string_view trimmed(std::string_view text) {
    std::size_t begin = text.size(), end = 0;
    for (std::size_t at = 0; at < text.size();) {
        const auto [code, bytes] = firstCharacter(text.substr(at));
        if (!isWhiteSpace(code)) {
            if (begin == text.size()) begin = at;
            end = at + bytes;
        }
        at += bytes;
    }
    return begin < end ? text.substr(begin, end - begin) : std::string_view();
}

std::string getIncrementalNameFromDocumentsFolder(const std::filesystem::path& folder,
                                                  const std::string& base) {
    std::int64_t largest = 0;
    std::error_code ended;
    for (std::filesystem::directory_iterator entry(folder, ended), last; !ended && entry != last;
         entry.increment(ended))
        largest = std::max(largest, numberBehind(base, entry->path().filename().string()));
    return base + " " + std::to_string(largest == kMost ? kMost : largest + 1);
}

} // namespace zephyra
