// Character: UTF-8 text taken apart, from whoever wrote it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace zephyra {

struct Character {
    std::int32_t code = -1; ///< of Unicode; -1 for a byte that is not UTF-8
    std::size_t bytes = 1;

    bool isControl() const noexcept; ///< of ASCII or Unicode, U+009F at most
    /// Whether a line of text and the XML of a session can hold it: UTF-8, and neither a control
    /// character nor one of the two codes that XML refuses.
    bool isPlain() const noexcept;
};

/// The first character of text, which is not empty; a byte that is not UTF-8 stands for itself.
/// Any thread.
Character firstCharacter(std::string_view text) noexcept;

} // namespace zephyra
