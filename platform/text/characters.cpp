#include "platform/text/characters.h"

#include <utf8proc.h>

#include <cstdlib>
#include <memory>

namespace zephyra {

bool Character::isControl() const noexcept {
    return code >= 0 && utf8proc_category(code) == UTF8PROC_CATEGORY_CC;
}

bool Character::isPlain() const noexcept {
    return code >= 0 && !isControl() && code != 0xFFFE && code != 0xFFFF;
}

bool Character::isInvisible() const noexcept {
    return code >= 0 && utf8proc_get_property(code)->ignorable;
}

Character firstCharacter(std::string_view text) noexcept {
    utf8proc_int32_t code = -1;
    const auto bytes = utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t*>(text.data()),
                                        static_cast<utf8proc_ssize_t>(text.size()), &code);
    if (bytes <= 0) return {};
    return {code, static_cast<std::size_t>(bytes)};
}

std::string composed(std::string_view text) {
    constexpr auto kOptions = static_cast<utf8proc_option_t>(UTF8PROC_STABLE | UTF8PROC_COMPOSE);
    utf8proc_uint8_t* joined = nullptr;
    const auto length = utf8proc_map(reinterpret_cast<const utf8proc_uint8_t*>(text.data()),
                                     static_cast<utf8proc_ssize_t>(text.size()), &joined, kOptions);
    const std::unique_ptr<utf8proc_uint8_t, decltype(&std::free)> owner(joined, std::free);
    if (length < 0) return std::string(text);
    return {reinterpret_cast<const char*>(joined), static_cast<std::size_t>(length)};
}

std::vector<std::size_t> characterEnds(std::string_view text) {
    std::vector<std::size_t> ends;
    utf8proc_int32_t before = -1, state = 0;
    for (std::size_t at = 0; at < text.size();) {
        const Character one = firstCharacter(text.substr(at));
        at += one.bytes;
        const bool isOwn = before < 0 || one.code < 0 ||
                           utf8proc_grapheme_break_stateful(before, one.code, &state);
        if (isOwn)
            ends.push_back(at);
        else
            ends.back() = at;
        if (before < 0 || one.code < 0) state = 0;
        before = one.code;
    }
    return ends;
}

} // namespace zephyra
