// What of the stage is painted again, and when.
#include "screens/model/slow_tick.h"
#include "screens/model/stage/dirty_boxes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <tuple>

namespace zephyra {
namespace {

TEST(DirtyBoxes, CoverAllThatChangedInAFew) {
    DirtyBoxes dirty;
    dirty.setArea(300, 300);
    dirty.add({0, 0, 9, 9});
    dirty.setArea(1000, 500);
    EXPECT_TRUE(dirty.isEmpty());
    std::mt19937 random(3);
    std::vector<Box> added;
    for (int i = 0; i < 60; ++i) {
        added.push_back({static_cast<int>(random() % 1100) - 50,
                         static_cast<int>(random() % 600) - 50, 1 + static_cast<int>(random() % 40),
                         1 + static_cast<int>(random() % 40)});
        dirty.add(added.back());
    }
    const std::vector<Box> boxes = dirty.take();
    EXPECT_LE(boxes.size(), DirtyBoxes::kMost);
    for (const Box& box : added)
        for (int y = std::max(0, box.y); y < std::min(500, box.bottom()); ++y)
            for (int x = std::max(0, box.x); x < std::min(1000, box.right()); ++x)
                ASSERT_TRUE(std::any_of(boxes.begin(), boxes.end(),
                                        [&](const Box& of) { return of.contains(x, y); }))
                    << x << ' ' << y;
    EXPECT_TRUE(dirty.take().empty());
    dirty.add({10, 10, 5, 5});
    dirty.add({900, 400, 5, 5}); // far away
    dirty.add({20, 12, 5, 5});
    EXPECT_EQ(dirty.take(), (std::vector<Box>{{900, 400, 5, 5}, {10, 10, 15, 7}}));
}

TEST(DirtyBoxes, AreFewAndCheapInAreasOfAnySize) {
    DirtyBoxes dirty;
    const std::size_t reserved = dirty.take().capacity();
    dirty.setArea(100'000, 100'000);
    for (int i = 0; i < 300; ++i) dirty.add({i * 7919 % 300 * 300, i * 300, 5, 5});
    EXPECT_LE(dirty.take().size(), DirtyBoxes::kMost);
    dirty.take();
    EXPECT_EQ(dirty.take().capacity(), reserved); // nothing is allocated
    for (const auto& [width, gap, boxes] :
         {std::tuple{1000, 390, 1u}, {1000, 410, 2u}, {4000, 140, 1u}, {4000, 160, 2u}}) {
        dirty.setArea(width, 1000);
        dirty.add({0, 0, 10, 10});
        dirty.add({0, 10 + gap, 10, 10});
        EXPECT_EQ(dirty.take().size(), boxes) << width << ' ' << gap;
    }
}

TEST(SlowTick, ComesAtOnceThenEveryThirdOfSixtyFramesAsUnevenAsTheyAre) {
    SlowTick tick;
    std::string ticks;
    for (const double frame : {1.0, 1.0, 1.0, 1.0, 1.2, 0.7, 0.9, 1.0, 1.0, 1.0, 1.0}) {
        tick.advance(frame / 60.0);
        ticks += tick.isNow() ? 'x' : '.';
    }
    EXPECT_EQ(ticks, "x..x..x..x.");
}

} // namespace
} // namespace zephyra
