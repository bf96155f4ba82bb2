// What the drawing itself decides: texts, colours, and how large a page may grow.

#include "pictures/cairo/contact_sheet.h"
#include "pictures/cairo/grain_lane.h"
#include "pictures/cairo/picture_axes.h"
#include "pictures/cairo/picture_file.h"
#include "tests/support/failing_calls.h"

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

std::uint32_t pixel(const Canvas& canvas, double x, double y) {
    cairo_surface_t* const surface = cairo_get_target(canvas.context());
    const auto* const pixels =
        reinterpret_cast<const std::uint32_t*>(cairo_image_surface_get_data(surface));
    return pixels[static_cast<int>(y) * cairo_image_surface_get_width(surface) +
                  static_cast<int>(x)];
}

/// How many pixels of box were drawn on.
int ink(const Canvas& canvas, const Box& box) {
    int drawn = 0;
    for (int y = static_cast<int>(box.y); y < box.bottom(); ++y)
        for (int x = static_cast<int>(box.x); x < box.right(); ++x)
            drawn += pixel(canvas, x, y) != pixel(canvas, 0, 0);
    return drawn;
}

TEST(Axes, StandTheRightWayUp) {
    Canvas canvas(200, 200);
    const Box box{100, 50, 60, 100};
    drawUprightAxis(canvas, box, {{1, "7"}}, "MM        "); // its ink is where it begins
    EXPECT_GT(ink(canvas, {80, 50, 18, 4}), ink(canvas, {80, 54, 18, 6})) << "the bar of the 7";
    EXPECT_EQ(ink(canvas, {80, 100, 18, 60}), 0);
    EXPECT_EQ(ink(canvas, {30, 0, 25, 100}), 0);
    EXPECT_GT(ink(canvas, {30, 100, 25, 100}), 20);
    drawTimeAxis(canvas, box, {{0, "7"}}, "");
    EXPECT_GT(ink(canvas, {100, 155, 30, 25}), 0);
    EXPECT_EQ(ink(canvas, {130, 155, 70, 25}), 0);
}

TEST(PictureFile, IsWholeOrNotThereWhateverFails) {
    const auto write = [](const fs::path& path) {
        PictureFile file;
        return file.open(path) && file.save(Canvas(20, 20));
    };
    expectWholeOrNotAtAll(write, {});
}

TEST(ContactSheet, ShowsEachPictureInItsPlaceAndLongNamesOnTwoLines) {
    const CellSize size = ContactSheet::cellSize(4);
    Canvas cell(size.width, size.height);
    cell.fill({0, 0, 1e4, 1e4}, theme::warning);
    const auto bytes = cell.png().value();
    const std::string png(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    const std::string name = "Ночь над рекой - Νύχτα πάνω από το ποτάμι - a name of a preset";
    ContactSheet sheet("", {{"A", "", png}, {name, "", png}, {"B", "", "no PNG"}, {"", "", png}});
    Canvas canvas(sheet.width(), sheet.height());
    sheet.draw(canvas);
    const auto panelIs = [&](double x, double y, const Colour& colour) {
        Canvas one(1, 1);
        one.fill({0, 0, 1, 1}, colour);
        return pixel(canvas, x + 2, y + 2) == pixel(one, 0, 0);
    };
    const double across = size.width + 24, below = size.height + 62 + 24;
    EXPECT_TRUE(panelIs(28, 72, theme::warning));
    EXPECT_TRUE(panelIs(28 + across + size.width - 4, 72 + size.height - 4, theme::warning));
    EXPECT_TRUE(panelIs(28 + 2 * across, 72, theme::panel));
    EXPECT_TRUE(panelIs(28, 72 + below, theme::warning)) << "three to a line";
    const double names = 72 + size.height + 2;
    EXPECT_GT(ink(canvas, {28 + across, names + 18, size.width + 4.0, 18}), 100)
        << "its second line";
    EXPECT_EQ(ink(canvas, {28 + across + size.width, names, 24, 60}), 0)
        << "nothing beyond its place";
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
