#include "modulation/assignment_search.h"

#include "controls/state_keys.h"
#include "platform/text/names.h"

namespace zephyra {

namespace {

bool contains(std::string_view text, const std::string& folded) {
    return foldCase(text).find(folded) != std::string::npos;
}

} // namespace

std::vector<AssignmentSearchResult> searchAssignments(const PropertyArray& records,
                                                      const std::vector<std::string>& displayNames,
                                                      std::string_view text) {
    const std::string folded = foldCase(text);
    std::vector<AssignmentSearchResult> found;
    for (std::size_t i = 0; i < records.size(); ++i) {
        const PropertyDictionary& record = *records[i].as<PropertyDictionary>();
        const std::string& identity = *record.at(assignment_key::kName).as<std::string>();
        if (contains(displayNames[i], folded) || contains(identity, folded))
            found.push_back({i, displayNames[i]});
    }
    return found;
}

} // namespace zephyra
