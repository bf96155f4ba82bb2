#include "platform/text/names.h"

#include "platform/text/message_text.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <numeric>
#include <utf8proc.h>
#include <utility>
#include <vector>

namespace zephyra {

namespace {

struct Freer {
    void operator()(utf8proc_uint8_t* text) const noexcept { std::free(text); }
};

bool isLetterOrDigit(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

} // namespace

std::string plainName(std::string_view name) {
    std::string plain;
    for (const char c : name)
        if (isLetterOrDigit(c))
            plain += c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    return plain;
}

std::string foldCase(std::string_view text) {
    constexpr auto kOptions =
        static_cast<utf8proc_option_t>(UTF8PROC_CASEFOLD | UTF8PROC_STABLE | UTF8PROC_COMPOSE);
    utf8proc_uint8_t* folded = nullptr;
    const utf8proc_ssize_t length =
        utf8proc_map(reinterpret_cast<const utf8proc_uint8_t*>(text.data()),
                     static_cast<utf8proc_ssize_t>(text.size()), &folded, kOptions);
    const std::unique_ptr<utf8proc_uint8_t, Freer> owner(folded);
    if (length < 0) return std::string(text);
    return {reinterpret_cast<const char*>(folded), static_cast<std::size_t>(length)};
}

std::size_t editDistance(std::string_view from, std::string_view to) {
    // One row for each prefix of from: the distances to every prefix of to.
    std::vector<std::size_t> twoBack, back, row(to.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 1; i <= from.size(); ++i) {
        twoBack = std::move(back);
        back = row;
        row[0] = i;
        for (std::size_t j = 1; j <= to.size(); ++j) {
            const bool same = from[i - 1] == to[j - 1];
            row[j] = std::min({back[j] + 1, row[j - 1] + 1, back[j - 1] + (same ? 0 : 1)});
            if (i > 1 && j > 1 && from[i - 1] == to[j - 2] && from[i - 2] == to[j - 1])
                row[j] = std::min(row[j], twoBack[j - 2] + 1);
        }
    }
    return row.back();
}

std::string_view nearestName(std::string_view name, std::span<const std::string_view> names) {
    const std::string plain = plainName(name);
    const auto distance = [&plain](std::string_view candidate) {
        const std::string other = plainName(candidate);
        const bool isPart = plain.size() >= 3 && other.find(plain) != std::string::npos;
        return std::pair(!isPart, editDistance(plain, other));
    };
    return *std::min_element(
        names.begin(), names.end(),
        [&](std::string_view a, std::string_view b) { return distance(a) < distance(b); });
}

bool hasWord(std::string_view words, std::string_view plain) {
    for (std::size_t start = 0; start <= words.size();) {
        const std::size_t end = std::min(words.find(' ', start), words.size());
        if (words.substr(start, end - start) == plain) return true;
        start = end + 1;
    }
    return false;
}

std::string rightName(std::string_view typed, std::span<const std::string_view> names,
                      std::span<const OtherWords> others) {
    const std::string plain = plainName(typed);
    for (const OtherWords& row : others)
        if (hasWord(row.words, plain)) return "it is called " + std::string(row.name);
    return "the nearest is " + inQuotes(nearestName(typed, names));
}

} // namespace zephyra
