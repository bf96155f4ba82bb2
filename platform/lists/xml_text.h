// XmlText: a text of XML that is taken piece by piece from its beginning.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace zephyra {

/// Knows characters and marks, not what they mean. The text must outlive it and what it hands out.
/// Any thread but RENDER.
class XmlText {
public:
    explicit XmlText(std::string_view text) : text_(text), rest_(text) {}

    bool isAtEnd() const noexcept { return rest_.empty(); }
    bool startsWith(std::string_view prefix) const noexcept { return rest_.starts_with(prefix); }
    std::size_t line() const; ///< of the next character, from 1

    /// Takes the prefix, if the rest begins with it.
    bool take(std::string_view prefix);
    /// Takes all up to end and end itself; answers what stood before it, nothing without an end.
    std::optional<std::string_view> takeUntil(std::string_view end);
    /// Takes all up to the next <, which stays; nothing when there is none.
    std::optional<std::string_view> takeCharacters();
    std::string_view takeLetters();
    void takeBlanks();

private:
    std::string_view takeFirst(std::size_t count);

    std::string_view text_;
    std::string_view rest_;
};

namespace xml_text {

bool isBlank(char byte) noexcept;
std::string_view withoutBlanksAround(std::string_view text);
std::string inLowerCase(std::string_view text); ///< of the letters a to z

/// Whether every & begins one of the five known names or the number of a character.
bool hasOnlyKnownReferences(std::string_view text);

} // namespace xml_text

} // namespace zephyra
