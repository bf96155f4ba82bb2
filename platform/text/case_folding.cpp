#include "platform/text/case_folding.h"

#include <cstddef>
#include <cstdlib>
#include <memory>
#include <utf8proc.h>

namespace zephyra {

namespace {

struct Freer {
    void operator()(utf8proc_uint8_t* text) const noexcept { std::free(text); }
};

constexpr auto kOptions =
    static_cast<utf8proc_option_t>(UTF8PROC_CASEFOLD | UTF8PROC_STABLE | UTF8PROC_COMPOSE);

} // namespace

std::string foldCase(std::string_view text) {
    utf8proc_uint8_t* folded = nullptr;
    const utf8proc_ssize_t length =
        utf8proc_map(reinterpret_cast<const utf8proc_uint8_t*>(text.data()),
                     static_cast<utf8proc_ssize_t>(text.size()), &folded, kOptions);
    const std::unique_ptr<utf8proc_uint8_t, Freer> owner(folded);
    if (length < 0) return std::string(text);
    return {reinterpret_cast<const char*>(folded), static_cast<std::size_t>(length)};
}

} // namespace zephyra
