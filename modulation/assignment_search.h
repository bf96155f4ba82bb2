// AssignmentSearchResult: an assignment record that a search found.
#pragma once

#include "platform/lists/property_list.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace zephyra {

struct AssignmentSearchResult {
    std::size_t record;      ///< its position among all records
    std::string namecomplex; ///< the control's display name
};

/// The records that have text in their "name" or display name, whatever the case, in their order.
/// records are dictionaries; displayNames has one name for each. MAIN.
std::vector<AssignmentSearchResult> searchAssignments(const PropertyArray& records,
                                                      const std::vector<std::string>& displayNames,
                                                      std::string_view text);

} // namespace zephyra
