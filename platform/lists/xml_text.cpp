#include "platform/lists/xml_text.h"

#include "platform/lists/property_field.h"

#include <algorithm>
#include <charconv>

namespace zephyra {

namespace {

constexpr std::string_view kBlanks = " \t\n\r";

char lowered(char byte) {
    return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte + 32) : byte;
}

/// reference: what stands between & and ;.
bool isKnownReference(std::string_view reference) {
    for (const std::string_view name : {"amp", "lt", "gt", "quot", "apos"})
        if (reference == name) return true;
    if (!reference.starts_with('#')) return false;
    const bool isHex = reference.starts_with("#x");
    const std::string_view digits = reference.substr(isHex ? 2 : 1);
    const char* const end = digits.data() + digits.size();
    std::uint32_t code = 0;
    const auto [stop, error] = std::from_chars(digits.data(), end, code, isHex ? 16 : 10);
    return error == std::errc() && stop == end && property_field::isTextCharacter(code);
}

} // namespace

std::size_t XmlText::line() const {
    const auto end = text_.end() - static_cast<std::ptrdiff_t>(rest_.size());
    return 1 + static_cast<std::size_t>(std::count(text_.begin(), end, '\n'));
}

std::string_view XmlText::takeFirst(std::size_t count) {
    const std::string_view first = rest_.substr(0, count);
    rest_.remove_prefix(first.size());
    return first;
}

bool XmlText::take(std::string_view prefix) {
    if (!rest_.starts_with(prefix)) return false;
    rest_.remove_prefix(prefix.size());
    return true;
}

std::optional<std::string_view> XmlText::takeUntil(std::string_view end) {
    const std::size_t at = rest_.find(end);
    if (at == std::string_view::npos) return std::nullopt;
    const std::string_view before = takeFirst(at);
    rest_.remove_prefix(end.size());
    return before;
}

std::optional<std::string_view> XmlText::takeCharacters() {
    const std::size_t at = rest_.find('<');
    if (at == std::string_view::npos) return std::nullopt;
    return takeFirst(at);
}

std::string_view XmlText::takeLetters() {
    const auto isLetter = [](char byte) { return lowered(byte) >= 'a' && lowered(byte) <= 'z'; };
    const auto end = std::find_if_not(rest_.begin(), rest_.end(), isLetter);
    return takeFirst(static_cast<std::size_t>(end - rest_.begin()));
}

void XmlText::takeBlanks() {
    takeFirst(std::min(rest_.find_first_not_of(kBlanks), rest_.size()));
}

namespace xml_text {

bool isBlank(char byte) noexcept {
    return kBlanks.find(byte) != std::string_view::npos;
}

std::string_view withoutBlanksAround(std::string_view text) {
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(kBlanks) + 1 - first);
}

std::string inLowerCase(std::string_view text) {
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(), lowered);
    return lower;
}

bool hasOnlyKnownReferences(std::string_view text) {
    for (std::size_t at = text.find('&'); at != std::string_view::npos;
         at = text.find('&', at + 1)) {
        const std::size_t end = text.find(';', at);
        if (end == std::string_view::npos) return false;
        if (!isKnownReference(text.substr(at + 1, end - at - 1))) return false;
    }
    return true;
}

} // namespace xml_text

} // namespace zephyra
