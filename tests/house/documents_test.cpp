// The documents tell the truth about where things are.

#include "tests/house/folder_table.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

#include <functional>
#include <regex>

namespace zephyra {
namespace {

namespace fs = std::filesystem;
const fs::path kTree = ZEPHYRA_SOURCE_DIR;

std::vector<fs::path> documents() {
    std::vector<fs::path> files = {kTree / "README.md"};
    for (const auto& entry : fs::directory_iterator(kTree / "docs"))
        if (entry.path().extension() == ".md") files.push_back(entry.path());
    return files;
}

void forEachMatch(const std::string& text, const char* pattern,
                  const std::function<void(const std::smatch&)>& visit) {
    const std::regex expression(pattern);
    for (std::sregex_iterator match(text.begin(), text.end(), expression), end; match != end;
         ++match)
        visit(*match);
}

TEST(Documents, NameOnlyFilesThatExist) {
    for (const fs::path& document : documents()) {
        const std::string text = readText(document);
        forEachMatch(text, R"(`((?:[a-z_]+/)+\w+\.(?:h|cpp|inl|md|mp3))`)",
                     [&](const std::smatch& path) {
                         EXPECT_TRUE(fs::exists(kTree / path[1].str()))
                             << document.filename() << " names " << path[1];
                     });
        forEachMatch(text, R"(\]\(([\w./-]+)\))", [&](const std::smatch& link) {
            EXPECT_TRUE(fs::exists(document.parent_path() / link[1].str()))
                << document.filename() << " links to " << link[1];
        });
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
