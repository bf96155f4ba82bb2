// The documents tell the truth about where things are.

#include "tests/house/folder_table.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

#include <regex>

namespace zephyra {
namespace {

namespace fs = std::filesystem;
const fs::path kTree = ZEPHYRA_SOURCE_DIR;

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
