// spokenList: names one after the other as people say them.
#pragma once

#include <string>
#include <vector>

namespace zephyra {

/// "a", "a and b", "a, b and c". Any thread.
inline std::string spokenList(const std::vector<std::string>& names) {
    std::string list;
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (i > 0) list += i + 1 == names.size() ? " and " : ", ";
        list += names[i];
    }
    return list;
}

} // namespace zephyra
