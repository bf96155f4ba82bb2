#include "platform/text/characters.h"

#include <utf8proc.h>

namespace zephyra {

bool Character::isControl() const noexcept {
    return code >= 0 && utf8proc_category(code) == UTF8PROC_CATEGORY_CC;
}

bool Character::isPlain() const noexcept {
    return code >= 0 && !isControl() && code != 0xFFFE && code != 0xFFFF;
}

Character firstCharacter(std::string_view text) noexcept {
    utf8proc_int32_t code = -1;
    const auto bytes = utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t*>(text.data()),
                                        static_cast<utf8proc_ssize_t>(text.size()), &code);
    if (bytes <= 0) return {};
    return {code, static_cast<std::size_t>(bytes)};
}

} // namespace zephyra
