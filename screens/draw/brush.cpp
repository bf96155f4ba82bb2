#include "screens/draw/brush.h"

#include "platform/text/characters.h"
#include "screens/draw/visual_order.h"
#include "screens/draw/window_typeface.h"

#include <zephyra_typeface.h>

#include <algorithm>

namespace zephyra::brush {

namespace {

using Weight = SystemGlyphs::Weight;

juce::Typeface::Ptr typeface(const void* data, int size, [[maybe_unused]] Weight weight) {
    auto shipped = juce::Typeface::createSystemTypefaceFor(data, static_cast<std::size_t>(size));
#if defined(__linux__) // elsewhere the system finds letters for all scripts itself
    return new WindowTypeface(shipped, weight);
#else
    return shipped;
#endif
}

// Shared by every window of the process, and freed with JUCE.
struct Typefaces final : juce::DeletedAtShutdown {
    juce::Typeface::Ptr regular =
        typeface(zephyra_typeface::RobotoRegular_ttf, zephyra_typeface::RobotoRegular_ttfSize,
                 Weight::regular);
    juce::Typeface::Ptr medium = typeface(zephyra_typeface::RobotoMedium_ttf,
                                          zephyra_typeface::RobotoMedium_ttfSize, Weight::medium);

    ~Typefaces() override { clearSingletonInstance(); }
    JUCE_DECLARE_SINGLETON(Typefaces, false)
};

JUCE_IMPLEMENT_SINGLETON(Typefaces)

// Sizes are those of the em, as in other programs; JUCE counts ascent and descent.
juce::Font font(const juce::Typeface::Ptr& typeface, double pixels) {
    juce::Font made(typeface);
    made.setHeight(static_cast<float>(pixels) * made.getHeight() /
                   juce::jmax(1.0f, made.getHeightInPoints()));
    return made;
}

bool isAscii(std::string_view text) {
    return std::ranges::all_of(text, [](char one) { return (one & 0x80) == 0; });
}

/// That and dots, which stand where the text that is left out would.
std::string shortened(const std::string& text, std::size_t end) {
    constexpr const char* kRightToLeftMark = "\u200F";
    return text.substr(0, end) + "..." + kRightToLeftMark;
}

} // namespace

juce::Font regular(double pixels) {
    return font(Typefaces::getInstance()->regular, pixels);
}

juce::Font medium(double pixels) {
    return font(Typefaces::getInstance()->medium, pixels);
}

juce::String drawn(const std::string& utf8) {
    if (isAscii(utf8)) return text(utf8);
    const std::string ordered = visualOrder(composed(utf8));
    std::string seen;
    for (std::string_view rest = ordered; !rest.empty();) {
        const Character one = firstCharacter(rest);
        if (!one.isInvisible()) seen += rest.substr(0, one.bytes);
        rest.remove_prefix(one.bytes);
    }
    return text(seen);
}

void drawLine(juce::Graphics& graphics, const std::string& utf8, juce::Rectangle<float> box,
              juce::Justification where) {
    if (isAscii(utf8)) return graphics.drawText(text(utf8), box, where, true);
    const juce::Font font = graphics.getCurrentFont();
    const auto fits = [&](const juce::String& line) {
        return font.getStringWidthFloat(line) <= box.getWidth() + 1.0f; // as JUCE counts
    };
    juce::String line = drawn(utf8);
    if (!fits(line)) {
        const std::vector<std::size_t> ends = characterEnds(utf8);
        const auto end = std::ranges::partition_point(
            ends, [&](std::size_t at) { return fits(drawn(shortened(utf8, at))); });
        line = drawn(shortened(utf8, end == ends.begin() ? 0 : *(end - 1)));
    }
    graphics.drawText(line, box, where, false);
}

} // namespace zephyra::brush
