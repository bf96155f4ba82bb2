// The tree keeps its own rules: who includes and links whom, and what a header's first line says.

#include "tests/house/tree_rules.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace zephyra {
namespace {

const std::filesystem::path kTree = ZEPHYRA_SOURCE_DIR;

TEST(Tree, BreaksNoneOfItsRules) {
    EXPECT_THAT(breachesOf(kTree, kHouse), testing::IsEmpty());
}

TEST(Tree, HasNoCirclesInItsTable) {
    // Listed from the bottom up (the command line stands beside the screens), so a row may only
    // use rows above it.
    for (std::size_t row = 0; row < kHouse.size(); ++row)
        for (const std::string_view used : kHouse[row].mayUse) {
            const auto above = std::find_if(kHouse.begin(), kHouse.begin() + row,
                                            [&](const FolderRow& r) { return r.folder == used; });
            EXPECT_NE(above, kHouse.begin() + row) << kHouse[row].folder << " uses " << used;
        }
}

TEST(Tree, ReportsEveryBreachOfItsCanary) {
    EXPECT_THAT(
        breachesOf(kTree / "tests/house/canary_tree", kHouse),
        testing::ElementsAre(
            "attic has sources and no row in the table",
            "effects/CMakeLists.txt links PkgConfig::SNDFILE",
            "effects/CMakeLists.txt links zephyra_engine",
            "effects/looks_up.h: the first line does not name what it declares",
            "effects/looks_up.h:4 includes engine/grain.h, which its folder may not use",
            "effects/looks_up.h:5 includes <sndfile.h>, which is not the standard library's",
            "engine/grain.h: the first line does not name what it declares",
            "engine/grain.h:4 includes grain.h, which is not rooted at the tree",
            "platform/public.h:4 includes <sndfile.h>, which is not the standard library's",
            "platform/public.h:5 includes <unistd.h>, which is not the standard library's"));
}

} // namespace
} // namespace zephyra
