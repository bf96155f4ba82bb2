#include "screens/draw/brush.h"

#include <zephyra_typeface.h>

namespace zephyra::brush {

namespace {

// Shared by every window of the process, and freed with JUCE.
struct Typefaces final : juce::DeletedAtShutdown {
    juce::Typeface::Ptr regular = juce::Typeface::createSystemTypefaceFor(
        zephyra_typeface::RobotoRegular_ttf, zephyra_typeface::RobotoRegular_ttfSize);
    juce::Typeface::Ptr medium = juce::Typeface::createSystemTypefaceFor(
        zephyra_typeface::RobotoMedium_ttf, zephyra_typeface::RobotoMedium_ttfSize);

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

} // namespace

juce::Font regular(double pixels) {
    return font(Typefaces::getInstance()->regular, pixels);
}

juce::Font medium(double pixels) {
    return font(Typefaces::getInstance()->medium, pixels);
}

} // namespace zephyra::brush
