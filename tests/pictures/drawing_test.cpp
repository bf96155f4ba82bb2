// What the drawing itself decides: texts, colours, and how large a page may grow.

#include "pictures/cairo/contact_sheet.h"
#include "pictures/cairo/grain_lane.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <string_view>

namespace zephyra {
namespace {

TEST(Canvas, TextThatIsNotUtf8IsShownAndDoesNotStopTheDrawing) {
    Canvas canvas(40, 40);
    for (const auto& [wrong, shown] : {std::pair("\xFF", "\\xFF"),
                                       {"\xC0\x80", "\\xC0\\x80"},
                                       {"\xED\xA0\x80", "\\xED\\xA0\\x80"},
                                       {"\x80\xF0\x9F\n", "\\x80\\xF0\\x9F?"}}) {
        EXPECT_EQ(canvas.textWidth(wrong), canvas.textWidth(shown));
        canvas.text(0, 10, wrong);
    }
    EXPECT_LT(canvas.textWidth("\xF0\x9D\x84\x9E\xE2\x99\xAA\xC3\xA4"),
              canvas.textWidth("?????????"));
    EXPECT_EQ(cairo_status(canvas.context()), CAIRO_STATUS_SUCCESS);
}

TEST(PitchColour, GoesFromWarmToCoolOverItsRangeAndNoFurther) {
    const auto warmth = [](double semitones) {
        const Colour colour = pitchColour(semitones, 6);
        return colour.red - colour.blue;
    };
    EXPECT_GT(warmth(-6), 0.4);
    EXPECT_GT(warmth(-3), warmth(0));
    EXPECT_GT(warmth(0), warmth(3));
    EXPECT_LT(warmth(6), -0.3);
    EXPECT_EQ(warmth(12), warmth(6));
}

TEST(ContactSheet, StaysWithinWhatCanBeDrawn) {
    for (const std::size_t count : {1, 48, 3000}) {
        const ContactSheet sheet("", std::vector<ContactSheetEntry>(count));
        EXPECT_LE(std::max(sheet.width(), sheet.height()), ContactSheet::kMostPixels) << count;
        EXPECT_GT(static_cast<std::size_t>(sheet.width() / 40) *
                      static_cast<std::size_t>(sheet.height() / 40),
                  count);
    }
}

} // namespace
} // namespace zephyra
