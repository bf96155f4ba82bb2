#include "screens/draw/visual_order.h"

#if defined(__linux__)

#include "platform/text/characters.h"

#include <juce_core/juce_core.h>

#include <cstdint>
#include <dlfcn.h>
#include <vector>

namespace zephyra {

namespace {

constexpr std::uint32_t kLeftToRight = 0x110;     // FRIBIDI_PAR_LTR
constexpr std::int32_t kFirstRightToLeft = 0x590; // Hebrew; nothing below changes its place

/// fribidi_log2vis, found by name: without it, a window writes as it would.
using Reorder = std::int8_t (*)(const std::uint32_t* text, int length, std::uint32_t* direction,
                                std::uint32_t* visual, int* toVisual, int* toText,
                                std::int8_t* levels);

Reorder reorder() {
    static void* const library = ::dlopen("libfribidi.so.0", RTLD_NOW | RTLD_LOCAL);
    static const auto found =
        library ? reinterpret_cast<Reorder>(::dlsym(library, "fribidi_log2vis")) : nullptr;
    return found;
}

} // namespace

std::string visualOrder(const std::string& utf8) {
    std::vector<std::uint32_t> text;
    bool mayChange = false;
    for (std::string_view rest = utf8; !rest.empty();) {
        const Character one = firstCharacter(rest);
        if (one.code < 0) return utf8;
        mayChange |= one.code >= kFirstRightToLeft;
        text.push_back(static_cast<std::uint32_t>(one.code));
        rest.remove_prefix(one.bytes);
    }
    if (!mayChange || !reorder()) return utf8;
    std::vector<std::uint32_t> visual(text.size() + 1);
    std::uint32_t direction = kLeftToRight;
    if (reorder()(text.data(), static_cast<int>(text.size()), &direction, visual.data(), nullptr,
                  nullptr, nullptr) == 0)
        return utf8;
    juce::String drawn;
    for (std::size_t i = 0; i < text.size(); ++i) drawn += static_cast<juce::juce_wchar>(visual[i]);
    return drawn.toStdString();
}

} // namespace zephyra

#else

namespace zephyra {

std::string visualOrder(const std::string& utf8) {
    return utf8;
}

} // namespace zephyra

#endif
