#include "cli/commands/commands.h"

#include "cli/terminal/json_text.h"
#include "cli/terminal/text_table.h"

#include <array>
#include <cstdlib>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <system_error>

namespace zephyra {

namespace fs = std::filesystem;

namespace {

struct Place {
    const char* role;
    fs::path folder;
    std::string reason; ///< what decided
    bool exists;
    std::string trouble; ///< ", ..."; empty where a folder stands
};

bool isSet(const char* variable) {
    const char* const value = std::getenv(variable);
    return value && *value;
}

std::string reasonForShared(const CommandContext& context) {
    if (context.sharedFolderWasNamed) return "--shared-folder";
    if (isSet("ZEPHYRA_SHARED_FOLDER")) return "$ZEPHYRA_SHARED_FOLDER";
    if (isSet("XDG_DATA_HOME") && fs::path(std::getenv("XDG_DATA_HOME")).is_absolute())
        return "$XDG_DATA_HOME";
    return "default";
}

Place place(const char* role, const fs::path& folder, std::string reason) {
    std::error_code error;
    const fs::file_type type = fs::status(folder, error).type();
    const bool isFolder = type == fs::file_type::directory;
    return {role, folder, std::move(reason), isFolder,
            isFolder                           ? ""
            : type == fs::file_type::not_found ? ", does not exist"
            : error                            ? ", cannot be looked at: " + error.message()
                                               : ", is no folder"};
}

std::array<Place, 2> places(const CommandContext& context) {
    const Folders& folders = context.folders;
    return {place("shared", folders.shared, reasonForShared(context)),
            place("resources", folders.resources,
                  isSet("ZEPHYRA_RESOURCE_FOLDER") ? "$ZEPHYRA_RESOURCE_FOLDER" : "default")};
}

std::string jsonText(const CommandContext& context) {
    nlohmann::ordered_json json;
    for (const Place& one : places(context))
        json[one.role] = {
            {"folder", one.folder.string()}, {"from", one.reason}, {"exists", one.exists}};
    return textOfJson(json);
}

std::string plainText(const CommandContext& context) {
    TextTable table;
    for (const Place& one : places(context))
        table.addRow({one.role, one.folder.string(), one.reason + one.trouble});
    return table.text();
}

} // namespace

ExitCode runWhere(const CommandContext& context, const WhereRequest& request) {
    return printOut(request.json ? jsonText(context) : plainText(context));
}

} // namespace zephyra
