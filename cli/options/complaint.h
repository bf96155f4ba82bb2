// Complaint: what a step of checking options says.
#pragma once

#include "platform/text/nearest_name.h"
#include "platform/text/result.h"

#include <optional>
#include <string>

namespace zephyra {

/// Nothing when all is well.
using Complaint = std::optional<Failure>;

/// "--tempo takes beats per minute from 1 to 999, not "fast"".
inline Failure wrongValue(const char* option, const std::string& typed, const std::string& right) {
    return {std::string(option) + " takes " + right + ", not " + inQuotes(typed)};
}

} // namespace zephyra
