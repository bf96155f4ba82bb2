#include "platform/files/incremental_name.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <string_view>
#include <system_error>

namespace zephyra {

namespace {

constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();

/// The whole number that text begins with behind its blanks; 0 without one, kMost when larger.
std::int64_t leadingNumber(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t\n\v\f\r"), text.size()));
    std::int64_t number = 0;
    for (const char c : text) {
        if (c < '0' || c > '9') break;
        const int digit = c - '0';
        number = number > (kMost - digit) / 10 ? kMost : number * 10 + digit;
    }
    return number;
}

/// The number between the first and the second base in name.
std::int64_t numberBehind(std::string_view base, std::string_view name) {
    const std::size_t found = name.find(base);
    if (base.empty() || found == std::string_view::npos) return 0;
    name.remove_prefix(found + base.size());
    return leadingNumber(name.substr(0, name.find(base)));
}

} // namespace

std::string getIncrementalNameFromDocumentsFolder(const std::filesystem::path& folder,
                                                  const std::string& base) {
    std::int64_t largest = 0;
    std::error_code ended;
    for (std::filesystem::directory_iterator entry(folder, ended), last; !ended && entry != last;
         entry.increment(ended))
        largest = std::max(largest, numberBehind(base, entry->path().filename().string()));
    return base + " " + std::to_string(largest == kMost ? kMost : largest + 1);
}

} // namespace zephyra
