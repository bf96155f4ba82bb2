#include "presets/record_places.h"

#include "controls/state_keys.h"
#include "library/bank_edits.h"
#include "stream/sample_search.h"

#include <string>
#include <string_view>

namespace zephyra {

namespace {

/// As another system may have written it.
bool hasDrive(std::string_view text) {
    return text.starts_with("\\\\") ||
           (text.size() > 2 && text[1] == ':' && (text[2] == '\\' || text[2] == '/'));
}

/// A lone slash may begin any text.
bool isPlace(std::string_view text) {
    const bool isAbsolute = text.starts_with('/') && text.find('/', 1) != std::string_view::npos;
    const bool leaves = text.starts_with("../"); // by way of folders that may tell a user's name
    return isAbsolute || leaves || text.starts_with("file:/") || hasDrive(text);
}

std::string fileNameOf(const std::string& text) {
    return text.substr(text.find_last_of(hasDrive(text) ? "\\/" : "/") + 1);
}

void forgetIn(PropertyValue& value) {
    if (auto* const text = value.as<std::string>(); text && isPlace(*text))
        *text = fileNameOf(*text);
    if (auto* const array = value.as<PropertyArray>())
        for (PropertyValue& each : *array) forgetIn(each);
    if (auto* const dictionary = value.as<PropertyDictionary>())
        for (auto& [key, each] : *dictionary) forgetIn(each);
}

/// A name without folder, and the folder below those that every machine has.
void forgetPlaceOf(PropertyDictionary& sample, const Folders& folders) {
    using namespace sample_key;
    const auto found = sample.find(kPath);
    auto* const path = found == sample.end() ? nullptr : found->second.as<std::string>();
    if (!path || !(path->starts_with('/') || isPlace(*path))) return;
    PropertyValue& relative = sample[kRelativePath];
    const auto* const kept = relative.as<std::string>();
    if (!kept || kept->empty()) {
        const std::string shared = pathBelow(*path, folders.shared);
        relative = shared.empty() ? pathBelow(*path, folders.resources) : shared;
    }
    *path = fileNameOf(*path);
}

} // namespace

void forgetPlaces(PropertyDictionary& record, const Folders& folders) {
    if (const auto found = record.find(ofStream(state_key::kSample)); found != record.end())
        if (auto* const sample = found->second.as<PropertyDictionary>())
            forgetPlaceOf(*sample, folders);
    for (auto& [key, value] : record)
        if (key != kSnapshotTags) forgetIn(value);
}

} // namespace zephyra
