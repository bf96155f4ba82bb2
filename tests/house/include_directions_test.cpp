// The tree keeps its own rules: who includes and links whom, and what a header's first line says.

#include "tests/house/tree_rules.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace zephyra {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::filesystem::path kTree = ZEPHYRA_SOURCE_DIR;
const std::filesystem::path kCanary = kTree / "tests/house/canary_tree";

TEST(Tree, IncludesOnlyInTheDirectionsOfTheTable) {
    EXPECT_THAT(forbiddenIncludes(kTree, kHouse), IsEmpty());
}

TEST(Tree, LinksOnlyWhatTheTableLetsItInclude) {
    EXPECT_THAT(forbiddenLinks(kTree, kHouse), IsEmpty());
}

TEST(Tree, NamesInEachHeadersFirstLineWhatItDeclares) {
    EXPECT_THAT(namelessHeaders(kTree, kHouse), IsEmpty());
}

TEST(Tree, HasARowForEveryFolderWithSources) {
    EXPECT_THAT(foldersWithoutRow(kTree, kHouse), IsEmpty());
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

TEST(TreeCanary, ReportsEveryForbiddenInclude) {
    EXPECT_THAT(
        forbiddenIncludes(kCanary, kHouse),
        ElementsAre("effects/looks_up.h:4 includes engine/grain.h, which its folder may not use",
                    "effects/looks_up.h:5 includes <sndfile.h>, which is not the standard "
                    "library's",
                    "engine/grain.h:4 includes grain.h, which is not rooted at the tree",
                    "platform/public.h:4 includes <sndfile.h>, which is not the standard "
                    "library's",
                    "platform/public.h:5 includes <unistd.h>, which is not the standard "
                    "library's"));
}

TEST(TreeCanary, ReportsEveryForbiddenLink) {
    EXPECT_THAT(forbiddenLinks(kCanary, kHouse),
                ElementsAre("effects/CMakeLists.txt links PkgConfig::SNDFILE",
                            "effects/CMakeLists.txt links zephyra_engine"));
}

TEST(TreeCanary, ReportsAHeaderWhoseFirstLineNamesNothing) {
    EXPECT_THAT(namelessHeaders(kCanary, kHouse),
                ElementsAre("effects/looks_up.h: the first line does not name what it declares",
                            "engine/grain.h: the first line does not name what it declares"));
}

TEST(TreeCanary, ReportsAFolderThatTheTableDoesNotKnow) {
    EXPECT_THAT(foldersWithoutRow(kCanary, kHouse),
                ElementsAre("attic has sources and no row in the table"));
}

} // namespace
} // namespace zephyra
