// SystemGlyphs: letters of the system's typefaces, for characters that the window's own has not.
#pragma once

#include <juce_graphics/juce_graphics.h>

#include <memory>
#include <optional>

namespace zephyra {

/// An em is 1 high; y goes down from the baseline. Plain data.
struct SystemGlyph {
    juce::Path outline = {};
    float width = 0.0f;
};

/// Asks fontconfig, whose order of typefaces is the user's, so that theirs is chosen for Han
/// characters. The first question takes some milliseconds. Message thread.
class SystemGlyphs {
public:
    enum class Weight { regular, medium };

    explicit SystemGlyphs(Weight weight);
    ~SystemGlyphs();
    SystemGlyphs(const SystemGlyphs&) = delete;
    SystemGlyphs& operator=(const SystemGlyphs&) = delete;

    /// None where no typeface has the character as an outline, as most have not of emoji.
    std::optional<SystemGlyph> find(juce::juce_wchar character);

private:
    class Faces;
    Weight weight_;
    std::unique_ptr<Faces> faces_;
};

} // namespace zephyra
