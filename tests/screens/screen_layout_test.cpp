// The window's grid against its drawing, and at every size that it may have.
#include "screens/model/palette.h"
#include "screens/model/screen_layout.h"

#include <gtest/gtest.h>

#include <ostream>
#include <utility>
#include <vector>

namespace zephyra {

void PrintTo(const Box& box, std::ostream* out) {
    *out << box.x << ", " << box.y << ", " << box.width << ", " << box.height;
}

TEST(ScreenLayout, IsTheDrawingAtItsSizes) {
    const ScreenLayout start = layOut(1100, 700, 1.0);
    EXPECT_EQ(start.top, (Box{0, 0, 1100, 56}));
    EXPECT_EQ(start.stage, (Box{0, 56, 1040, 332}));
    EXPECT_EQ(start.ruler, (Box{0, 388, 1040, 20}));
    EXPECT_EQ(start.meter, (Box{1040, 56, 60, 352}));
    EXPECT_EQ(start.path, (Box{0, 408, 1100, 200}));
    EXPECT_EQ(start.spectrum, (Box{0, 608, 726, 56}));
    EXPECT_EQ(start.foot, (Box{0, 664, 1100, 36}));
    std::vector<int> begins;
    for (const Box& section : start.sections) begins.push_back(section.x);
    EXPECT_EQ(begins, (std::vector<int>{16, 292, 400, 508, 616, 808, 916}));

    EXPECT_EQ(layOut(1100, 2000, 2.5).scale, 1.25) << "no more than fits";
    const ScreenLayout least = layOut(800, 520, 1.0);
    EXPECT_EQ(least.stage.height + least.ruler.height, 252);
    EXPECT_EQ(least.columns[1], (Box{76, 296, 64, 160}));
    const ScreenLayout large = layOut(1800, 1100, 1.0);
    EXPECT_EQ(large.stage.height + large.ruler.height, 588);
    EXPECT_EQ(large.columns[0].width, 136);
    EXPECT_NEAR(layOut(3840, 2160, 1.0).scale, 1.9636, 1e-4);
}

TEST(ScreenLayout, TilesTheWindowAtEverySizeAndZoom) {
    for (const double zoom : {0.75, 1.0, 1.25, 2.0, 2.5})
        for (int width = 700; width <= 3840; width += 157)
            for (int height = 500; height <= 2160; height += 121) {
                const ScreenLayout of = layOut(width, height, zoom);
                SCOPED_TRACE(testing::Message() << width << " x " << height << " at " << zoom);
                EXPECT_GE(of.stage.height + of.ruler.height, 0.4 * of.window.height);
                EXPECT_EQ(of.top.bottom(), of.stage.y);
                EXPECT_EQ(of.ruler.bottom(), of.path.y);
                EXPECT_EQ(of.meter.bottom(), of.path.y);
                EXPECT_EQ(of.path.bottom(), of.spectrum.y);
                EXPECT_EQ(of.spectrum.right(), of.scope.x);
                EXPECT_EQ(of.foot.bottom(), of.window.height);
                EXPECT_EQ(of.meter.right(), of.window.width);
                EXPECT_LE(of.columns.back().right(), of.window.width);
                for (std::size_t i = 1; i < of.columns.size(); ++i)
                    EXPECT_GE(of.columns[i].x, of.columns[i - 1].right());
            }
}

TEST(Palette, TextIsReadOnEverySurface) {
    using namespace palette;
    for (const Color text : {kDim, kFaint, kText, kArc, kBright, kAccent})
        for (const Color surface : {kGround, kStage, kRaised})
            EXPECT_GE(contrast(text, surface), 4.5);
    for (const Color fill : {kArc, kAccent}) EXPECT_GE(contrast(kInk, fill), 4.5);
    EXPECT_NEAR(contrast(kBright, kGround), 17.7, 0.05); // as drawn
    const std::pair<double, Color> scale[] = {
        {-99, hex(0xE23D6D)}, {-24, hex(0xE23D6D)}, {-16, hex(0xF4665A)},
        {-8, hex(0xFF9B54)},  {0, hex(0xFFE3A3)},   {4, blend(hex(0xFFE3A3), hex(0x6FE0B0, 0.5f))},
        {8, hex(0x6FE0B0)},   {16, hex(0x3FB6E8)},  {99, hex(0x7C7BFF)}};
    for (const auto& [semitones, color] : scale) EXPECT_EQ(pitch(semitones), color) << semitones;
}

} // namespace zephyra
