// Character: UTF-8 text taken apart, from whoever wrote it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace zephyra {

struct Character {
    std::int32_t code = -1; ///< of Unicode; -1 for a byte that is not UTF-8
    std::size_t bytes = 1;

    bool isControl() const noexcept; ///< of ASCII or Unicode, U+009F at most
    /// Whether a line of text and the XML of a session can hold it: UTF-8, and neither a control
    /// character nor one of the two codes that XML refuses.
    bool isPlain() const noexcept;
    /// Whether it only tells how its neighbours are written: joiners, direction marks, variation
    /// selectors.
    bool isInvisible() const noexcept;
};

/// The first character of text, which is not empty; a byte that is not UTF-8 stands for itself.
/// Any thread.
Character firstCharacter(std::string_view text) noexcept;

/// text with accents joined to their letters, where Unicode has the two as one; text that is not
/// UTF-8 comes back unchanged. Any thread but RENDER.
std::string composed(std::string_view text);

/// Where each character ends as a reader counts them, in bytes: an accent, a joined emoji belong to
/// what they follow. Bytes that are not UTF-8 stand for themselves. Any thread but RENDER.
std::vector<std::size_t> characterEnds(std::string_view text);

} // namespace zephyra
