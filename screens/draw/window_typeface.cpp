#if defined(__linux__)

#include "screens/draw/window_typeface.h"

#include <utility>

namespace zephyra {

namespace {

constexpr juce::juce_wchar kAscii = 0x80;     // where it ends
constexpr int kNoCharacter = 0x10FFFF;        // that no typeface has
constexpr float kEm = 2048.0f / (1900 + 500); // of the shipped typeface, of its height

bool isAscii(const juce::String& text) {
    for (const char* at = text.toRawUTF8(); *at; ++at)
        if (static_cast<unsigned char>(*at) >= kAscii) return false;
    return true;
}

} // namespace

WindowTypeface::WindowTypeface(Ptr shipped, SystemGlyphs::Weight weight)
    : Typeface(shipped->getName(), shipped->getStyle()), shipped_(std::move(shipped)),
      system_(weight) {
    shipped_->getOutlineForGlyph(kNoCharacter, box_);
}

const SystemGlyph* WindowTypeface::foreign(juce::juce_wchar character) {
    if (character < kAscii) return nullptr;
    const auto [at, isNew] = known_.try_emplace(character);
    std::optional<SystemGlyph>& glyph = at->second;
    if (isNew) {
        juce::Path own;
        shipped_->getOutlineForGlyph(static_cast<int>(character), own);
        if (own == box_) glyph = system_.find(character);
        if (glyph) {
            glyph->outline.applyTransform(juce::AffineTransform::scale(kEm));
            glyph->width *= kEm;
        }
    }
    return glyph ? &*glyph : nullptr;
}

bool WindowTypeface::hasForeign(const juce::String& text) {
    if (isAscii(text)) return false;
    for (auto at = text.getCharPointer(); !at.isEmpty();)
        if (foreign(at.getAndAdvance())) return true;
    return false;
}

float WindowTypeface::getStringWidth(const juce::String& text) {
    if (!hasForeign(text)) return shipped_->getStringWidth(text);
    juce::Array<int> glyphs;
    juce::Array<float> places;
    getGlyphPositions(text, glyphs, places);
    return places.getLast();
}

void WindowTypeface::getGlyphPositions(const juce::String& text, juce::Array<int>& glyphs,
                                       juce::Array<float>& xOffsets) {
    if (!hasForeign(text)) return shipped_->getGlyphPositions(text, glyphs, xOffsets);
    float x = 0.0f;
    xOffsets.add(x);
    juce::String run; // of the shipped typeface's, which knows which of its letters move together
    const auto endRun = [&] {
        juce::Array<int> own;
        juce::Array<float> places;
        if (run.isNotEmpty()) shipped_->getGlyphPositions(run, own, places);
        for (int i = 0; i < own.size(); ++i) {
            glyphs.add(own[i]);
            xOffsets.add(x + places[i + 1]);
        }
        if (!places.isEmpty()) x += places.getLast();
        run.clear();
    };
    for (auto at = text.getCharPointer(); !at.isEmpty();) {
        const juce::juce_wchar character = at.getAndAdvance();
        const SystemGlyph* const glyph = foreign(character);
        if (!glyph) {
            run += character;
            continue;
        }
        endRun();
        glyphs.add(static_cast<int>(character));
        xOffsets.add(x += glyph->width);
    }
    endRun();
}

bool WindowTypeface::getOutlineForGlyph(int glyph, juce::Path& path) {
    const SystemGlyph* const other = foreign(static_cast<juce::juce_wchar>(glyph));
    if (!other) return shipped_->getOutlineForGlyph(glyph, path);
    path = other->outline;
    return true;
}

juce::EdgeTable* WindowTypeface::getEdgeTableForGlyph(int glyph,
                                                      const juce::AffineTransform& transform,
                                                      float fontHeight) {
    const SystemGlyph* const other = foreign(static_cast<juce::juce_wchar>(glyph));
    if (!other) return shipped_->getEdgeTableForGlyph(glyph, transform, fontHeight);
    if (other->outline.isEmpty()) return nullptr;
    const auto box = other->outline.getBoundsTransformed(transform).getSmallestIntegerContainer();
    return new juce::EdgeTable(box.expanded(1, 0), other->outline, transform); // JUCE's to free
}

} // namespace zephyra

#endif
