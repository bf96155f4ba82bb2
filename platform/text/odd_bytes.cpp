#include "platform/text/odd_bytes.h"

#include "platform/text/characters.h"
#include "platform/text/text_numbers.h"

#include <cstddef>
#include <optional>

namespace zephyra {

namespace {

constexpr std::size_t kEscapeLength = 4; // \xHH

/// The byte that the escape at the beginning of text stands for; nothing where there is none.
std::optional<char> escapedByte(std::string_view text) {
    if (text.size() < kEscapeLength || !text.starts_with("\\x")) return std::nullopt;
    return parseHexByte(text.substr(2, 2));
}

void addEscape(std::string& text, char c) {
    constexpr const char* digits = "0123456789ABCDEF";
    const auto byte = static_cast<unsigned char>(c);
    text.append("\\x").append(1, digits[byte >> 4]).append(1, digits[byte & 15]);
}

} // namespace

std::string typedFromBytes(std::string_view bytes) {
    std::string typed;
    while (!bytes.empty()) {
        const Character next = firstCharacter(bytes);
        if (next.isPlain() && !escapedByte(bytes))
            typed += bytes.substr(0, next.bytes);
        else
            for (const char c : bytes.substr(0, next.bytes)) addEscape(typed, c);
        bytes.remove_prefix(next.bytes);
    }
    return typed;
}

std::string bytesFromTyped(std::string_view typed) {
    std::string bytes;
    while (!typed.empty()) {
        const auto byte = escapedByte(typed);
        bytes += byte.value_or(typed.front());
        typed.remove_prefix(byte ? kEscapeLength : 1);
    }
    return bytes;
}

std::string shownFile(const std::filesystem::path& file) {
    return typedFromBytes(file.string());
}

} // namespace zephyra
