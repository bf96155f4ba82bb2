// The house's rules about its own files.

#include "tests/house/tree_rules.h"

#include <algorithm>
#include <fstream>
#include <regex>

namespace zephyra {
namespace {

namespace fs = std::filesystem;
using Lines = std::vector<std::string>;

bool isHeader(const fs::path& file) {
    return file.extension() == ".h";
}

bool isSource(const fs::path& file) {
    return isHeader(file) || file.extension() == ".cpp" || file.extension() == ".inl";
}

Lines linesOf(const fs::path& file) {
    std::ifstream in(file);
    Lines lines;
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
}

/// Every file below a folder that the filter takes, in order of their names.
std::vector<fs::path> filesBelow(const fs::path& folder, bool (*takes)(const fs::path&)) {
    std::vector<fs::path> files;
    if (!fs::is_directory(folder)) return files;
    for (const auto& entry : fs::recursive_directory_iterator(folder))
        if (entry.is_regular_file() && takes(entry.path())) files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    return files;
}

bool isIn(std::string_view folder, std::string_view path) {
    return path == folder || (path.starts_with(folder) && path.substr(folder.size())[0] == '/');
}

/// The row of the innermost room that path, from the root, lies in; null for none.
const FolderRow* rowOf(const std::vector<FolderRow>& house, std::string_view path) {
    const FolderRow* innermost = nullptr;
    for (const FolderRow& row : house)
        if (isIn(row.folder, path) && (!innermost || row.folder.size() > innermost->folder.size()))
            innermost = &row;
    return innermost;
}

bool mayUse(const FolderRow& row, const FolderRow& used) {
    return &used == &row ||
           std::any_of(row.mayUse.begin(), row.mayUse.end(), [&](std::string_view folder) {
               return used.folder == folder || (isIn(folder, used.folder) && !used.apart);
           });
}

/// Every source of the row's own, without those of the rooms in it that have rows.
std::vector<fs::path> filesOf(const fs::path& root, const std::vector<FolderRow>& house,
                              const FolderRow& row, bool (*takes)(const fs::path&)) {
    std::vector<fs::path> files = filesBelow(root / row.folder, takes);
    std::erase_if(files, [&](const fs::path& file) {
        return rowOf(house, fs::relative(file, root).string()) != &row;
    });
    return files;
}

bool mayIncludeSystemHeader(const fs::path& root, const FolderRow& row, const fs::path& file,
                            const std::string& name) {
    if (name.find_first_of("./") == std::string::npos) return true; // as those of C++ are named
    if (kInstructionHeaders.find(" " + name + " ") != std::string_view::npos) return true;
    if (row.thirdParty == ThirdParty::Everywhere) return true;
    // The public headers are those at a room's top; deeper ones belong to a module's sources.
    const bool isPublic = isHeader(file) && fs::relative(file.parent_path(), root) == row.folder;
    return row.thirdParty == ThirdParty::InSources && !isPublic;
}

/// Why file may not have this line, empty when it may.
std::string includeBreach(const fs::path& root, const std::vector<FolderRow>& house,
                          const FolderRow& row, const fs::path& file, const std::string& line) {
    static const std::regex include(R"(^\s*#\s*include\s*([<"])([^>"]+)[>"])");
    std::smatch match;
    if (!std::regex_search(line, match, include)) return {};
    const std::string name = match[2];
    if (match[1] == "<")
        return mayIncludeSystemHeader(root, row, file, name)
                   ? ""
                   : " includes <" + name + ">, which is not the standard library's";
    if (!fs::exists(root / name)) return " includes " + name + ", which is not rooted at the tree";
    const FolderRow* const used = rowOf(house, name);
    if (!used || !mayUse(row, *used)) return " includes " + name + ", which its folder may not use";
    return {};
}

/// "pictures/cairo" makes the library zephyra_pictures_cairo.
std::string libraryOf(std::string_view folder) {
    std::string name(folder);
    std::replace(name.begin(), name.end(), '/', '_');
    return name;
}

/// The header without comments and includes.
std::string codeOf(const Lines& lines) {
    std::string code;
    for (const std::string& line : lines)
        if (line.rfind("#include", 0) != 0) code += line.substr(0, line.find("//")) + '\n';
    return code;
}

/// Whether the first line, up to a colon if it has one, holds a word of the header's code.
bool namesSomething(const Lines& lines) {
    static const std::regex word("[A-Za-z_][A-Za-z0-9_]+");
    if (lines.empty() || lines[0].rfind("// ", 0) != 0) return false;
    const std::string head = lines[0].substr(3, lines[0].find(": ") - 3);
    const std::string code = codeOf(lines);
    return std::any_of(std::sregex_iterator(head.begin(), head.end(), word), {},
                       [&](const std::smatch& name) {
                           return std::regex_search(code, std::regex("\\b" + name.str() + "\\b"));
                       });
}

void addForbiddenIncludes(const fs::path& root, const std::vector<FolderRow>& house,
                          const FolderRow& row, Lines& breaches) {
    for (const fs::path& file : filesOf(root, house, row, isSource)) {
        std::size_t number = 0;
        for (const std::string& line : linesOf(file)) {
            ++number;
            const std::string why = includeBreach(root, house, row, file, line);
            if (!why.empty())
                breaches.push_back(fs::relative(file, root).string() + ":" +
                                   std::to_string(number) + why);
        }
    }
}

void addForbiddenLinks(const fs::path& root, const std::vector<FolderRow>& house,
                       const FolderRow& row, Lines& breaches) {
    static const std::regex library(R"(\bzephyra_([a-z_]+)\b(?!\()|\b(PkgConfig::\w+))");
    const fs::path file = root / row.folder / "CMakeLists.txt";
    std::string text;
    for (const std::string& line : linesOf(file)) text += line.substr(0, line.find('#')) + '\n';
    for (std::sregex_iterator match(text.begin(), text.end(), library), end; match != end;
         ++match) {
        const auto linked = std::find_if(house.begin(), house.end(), [&](const auto& r) {
            return libraryOf(r.folder) == (*match)[1];
        });
        if ((linked != house.end() && !mayUse(row, *linked)) ||
            ((*match)[2].matched && row.thirdParty == ThirdParty::Nowhere))
            breaches.push_back(fs::relative(file, root).string() + " links " + match->str());
    }
}

} // namespace

Lines breachesOf(const fs::path& root, const std::vector<FolderRow>& house) {
    Lines breaches;
    for (const FolderRow& row : house) {
        addForbiddenIncludes(root, house, row, breaches);
        addForbiddenLinks(root, house, row, breaches);
        for (const fs::path& file : filesOf(root, house, row, isHeader))
            if (!namesSomething(linesOf(file)))
                breaches.push_back(fs::relative(file, root).string() +
                                   ": the first line does not name what it declares");
    }
    for (const auto& entry : fs::directory_iterator(root)) {
        const std::string name = entry.path().filename().string();
        if (!entry.is_directory() || name == "build" || name[0] == '.') continue;
        const bool isAround = std::ranges::count(kAround, name) > 0;
        if (!rowOf(house, name) && !isAround && !filesBelow(entry.path(), isSource).empty())
            breaches.push_back(name + " has sources and no row in the table");
    }
    std::sort(breaches.begin(), breaches.end());
    return breaches;
}

} // namespace zephyra
