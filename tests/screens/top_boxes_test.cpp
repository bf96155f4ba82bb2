// Where the top's buttons and lines stand.
#include "screens/model/top/top_boxes.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace zephyra {
namespace {

TEST(TopBoxes, StandApartInTheirAreaAtEverySizeAndZoom) {
    for (const double zoom : {0.75, 1.0, 1.5, 2.5})
        for (const auto& [width, height] : {std::pair{600, 400},
                                            {800, 520},
                                            {960, 620},
                                            {1100, 700},
                                            {1400, 900},
                                            {1800, 1100},
                                            {3840, 2160}})
            for (const bool more : {false, true}) {
                const ScreenLayout layout = layOut(width, height, zoom);
                const TopBoxes of = topBoxes(layout, {300, 400, more, more});
                std::vector<Box> boxes{of.play,     of.rewind, of.freeze,  of.live,     of.clear,
                                       of.previous, of.next,   of.preset,  of.sample,   of.locate,
                                       of.random,   of.undo,   of.redo,    of.compareA, of.compareB,
                                       of.tempo,    of.bar,    of.settings};
                std::erase_if(boxes, [](const Box& box) { return box.width == 0; });
                EXPECT_GE(of.preset.width, layout.px(more ? 60 : 110));
                for (std::size_t i = 0; i < boxes.size(); ++i) {
                    EXPECT_GE(boxes[i].x, i == 0 ? 0 : boxes[i - 1].right())
                        << width << " at " << zoom << ", box " << i << (more ? ", live" : "");
                    EXPECT_GE(boxes[i].y, 0);
                    EXPECT_LE(boxes[i].bottom(), layout.top.height);
                }
                EXPECT_LE(boxes.back().right(), layout.window.width);
            }
}

} // namespace
} // namespace zephyra
