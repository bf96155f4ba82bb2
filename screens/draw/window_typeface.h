// WindowTypeface: the typeface that ships with the window, and the system's letters for characters
// that it has not.
#pragma once

#include "screens/draw/system_glyphs.h"

#include <optional>
#include <unordered_map>

namespace zephyra {

/// A text without such characters is the shipped typeface's own matter. Where the system has none
/// either, its box says so. Glyphs are numbered by their characters, as JUCE's are on Linux.
/// Message thread.
class WindowTypeface final : public juce::Typeface {
public:
    WindowTypeface(Ptr shipped, SystemGlyphs::Weight weight);

    float getAscent() const override { return shipped_->getAscent(); }
    float getDescent() const override { return shipped_->getDescent(); }
    float getHeightToPointsFactor() const override { return shipped_->getHeightToPointsFactor(); }
    float getStringWidth(const juce::String& text) override;
    void getGlyphPositions(const juce::String& text, juce::Array<int>& glyphs,
                           juce::Array<float>& xOffsets) override;
    bool getOutlineForGlyph(int glyph, juce::Path& path) override;
    juce::EdgeTable* getEdgeTableForGlyph(int glyph, const juce::AffineTransform& transform,
                                          float fontHeight) override;

private:
    /// Null for a character that is the shipped typeface's to draw.
    const SystemGlyph* foreign(juce::juce_wchar character);
    bool hasForeign(const juce::String& text);

    Ptr shipped_;
    SystemGlyphs system_;
    juce::Path box_; // that the shipped typeface draws for what it has not
    std::unordered_map<juce::juce_wchar, std::optional<SystemGlyph>> known_; // beyond ASCII
};

} // namespace zephyra
