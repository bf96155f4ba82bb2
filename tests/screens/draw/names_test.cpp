// Names in any script: which typeface they are written in, in which order, and where they are cut.
#include "screens/draw/brush.h"
#include "screens/draw/system_glyphs.h"
#include "screens/draw/visual_order.h"
#include "tests/screens/no_display.h"

#include <gtest/gtest.h>

#include <dlfcn.h>
#include <set>

namespace zephyra {
namespace {

struct Names : testing::Test {
    static juce::Path outline(const char* character) {
        juce::Array<int> glyphs;
        juce::Array<float> places;
        font().getGlyphPositions(juce::String::fromUTF8(character), glyphs, places);
        juce::Path path;
        font().getTypefacePtr()->getOutlineForGlyph(glyphs.getFirst(), path);
        return path;
    }
    static juce::Font font() { return brush::medium(20.0); }

    const juce::ScopedJuceInitialiser_GUI juce;
};

TEST_F(Names, TakeLettersOfTheSystemThatTheWindowsTypefaceHasNot) {
    const juce::Path box = outline("\U0010FFFE");
    ASSERT_FALSE(box.isEmpty()); // what nobody has says so
    for (const char* known : {"A", "\u00E9", "\u0416"}) EXPECT_FALSE(outline(known) == box);
    const juce::Path snowman = outline("\u2603");
    if (!SystemGlyphs(SystemGlyphs::Weight::medium).find(U'\u2603'))
        GTEST_SKIP() << "no typeface of the system has a snowman";
    EXPECT_FALSE(snowman == box);
    EXPECT_GT(snowman.getBounds().getHeight(), 0.3f); // of the line's height, as letters are
    EXPECT_LT(snowman.getBounds().getHeight(), 1.2f);
    const auto width = [](const char* text) {
        return font().getStringWidthFloat(juce::String::fromUTF8(text));
    };
    EXPECT_NEAR(width("AV\u2603AV"), 2.0f * width("AV") + width("\u2603"), 0.01f); // kerned
}

TEST_F(Names, StandFromLeftToRight) {
    if (!::dlopen("libfribidi.so.0", RTLD_LAZY)) GTEST_SKIP() << "FriBidi is not installed";
    const std::pair<std::string, std::string> cases[] = {
        {"a.wav", "a.wav"},
        {"\u05D0\u05D1 12.wav", "12 \u05D1\u05D0.wav"}, // digits of a line that runs to the right
        {"(\u05D0\u05D1)", "(\u05D1\u05D0)"},
        {"\u0644\u0627", "\uFEFB"}, // two letters that join
        {"e\u0301\u200B!", "\u00E9!"}};
    for (const auto& [text, seen] : cases) EXPECT_EQ(brush::drawn(text).toStdString(), seen);
    EXPECT_EQ(visualOrder("\u05D0\xff"), "\u05D0\xff");
}

/// What a line leaves of a name, in characters that have ink.
TEST_F(Names, AreCutBetweenCharactersAndAtTheirEnd) {
    struct Catcher final : juce::LowLevelGraphicsSoftwareRenderer {
        Catcher() : LowLevelGraphicsSoftwareRenderer(juce::Image(juce::Image::RGB, 1, 1, true)) {}
        bool clipRegionIntersects(const juce::Rectangle<int>&) override { return true; }
        void drawGlyph(int glyph, const juce::AffineTransform& at) override {
            text += juce::juce_wchar(glyph);
            right = std::max(right, at.getTranslationX());
        }
        juce::String text;
        float right = 0.0f;
    };
    for (const char* name : {"夜夜夜夜夜夜夜夜夜夜", "nx\u0303nx\u0303nx\u0303nx\u0303nx\u0303",
                             "\u05D0\u05D1\u05D2\u05D3\u05D4\u05D5\u05D6\u05D7"}) {
        std::set<juce::String> seen;
        const juce::String whole = brush::drawn(name);
        const int high = juce::roundToInt(font().getStringWidthFloat(whole));
        for (int wide = 30; wide <= high; ++wide) {
            Catcher catcher;
            juce::Graphics graphics(catcher);
            graphics.setFont(font());
            brush::drawLine(graphics, name, {0.0f, 0.0f, static_cast<float>(wide), 30.0f},
                            juce::Justification::centredLeft);
            EXPECT_LE(catcher.right, static_cast<float>(wide) + 1.0f);
            const bool isRight = name[0] == '\xD7';
            const juce::String rest = catcher.text.removeCharacters(".");
            if (catcher.text == whole) continue;
            EXPECT_TRUE(isRight ? catcher.text.startsWith("...") : catcher.text.endsWith("..."));
            EXPECT_TRUE(isRight ? whole.endsWith(rest) : whole.startsWith(rest)) << catcher.text;
            EXPECT_FALSE(rest.endsWith("x")) << "without its accent";
            seen.insert(rest);
        }
        EXPECT_GT(seen.size(), 3u) << name;
    }
}

} // namespace
} // namespace zephyra
