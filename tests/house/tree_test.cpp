// The tree keeps its own rules: who includes and links whom, what a header's first line says, and
// that the documents tell the truth about where things are.

#include "tests/house/tree_rules.h"
#include "tests/support/testing.h"

#include <regex>

namespace zephyra {
namespace {

const fs::path kTree = ZEPHYRA_SOURCE_DIR;

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
        ElementsAre(
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

TEST(Documents, NameAndLinkToOnlyFilesThatExist) {
    const std::regex names(R"(`((?:[a-z_]+/)+\w+\.(?:h|cpp|inl|md|mp3))`)");
    const std::regex links(R"(\]\(([\w./-]+)\))");
    std::vector<fs::path> documents = {kTree / "README.md"};
    for (const auto& entry : fs::directory_iterator(kTree / "docs"))
        if (entry.path().extension() == ".md") documents.push_back(entry.path());
    for (const fs::path& document : documents) {
        const std::string text = readText(document);
        for (const auto& [kind, from] : {std::pair(names, kTree), {links, document.parent_path()}})
            for (std::sregex_iterator match(text.begin(), text.end(), kind), end; match != end;
                 ++match)
                EXPECT_TRUE(fs::exists(from / (*match)[1].str()))
                    << document << ": " << (*match)[1];
    }
}

TEST(Documents, HaveAPageForEveryFolderOfTheHouse) {
    std::vector<std::string_view> folders = kAround;
    for (const FolderRow& row : kHouse)
        if (row.folder.find('/') == std::string_view::npos) folders.push_back(row.folder);
    for (const std::string_view folder : folders)
        EXPECT_EQ(fs::exists(kTree / folder),
                  fs::exists(kTree / "docs" / (std::string(folder) + ".md")))
            << folder;
}

} // namespace
} // namespace zephyra
