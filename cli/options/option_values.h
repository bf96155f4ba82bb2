// Complaint and KeyValues: what an option's text says, and what is wrong with it.
#pragma once

#include "platform/text/message_text.h"
#include "platform/text/names.h"
#include "platform/text/result.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace zephyra {

/// Nothing when all is well.
using Complaint = std::optional<Failure>;

/// "--tempo takes beats per minute from 1 to 999, not "fast"".
inline Failure wrongValue(std::string_view option, std::string_view typed,
                          const std::string& right) {
    return {std::string(option) + " takes " + right + ", not " + inQuotes(typed)};
}

/// Whether text is a number from low to high, counted in unit (see quantities.h), which is then in
/// value. right says what would be right: "Hz from 0.016 to 24".
Complaint readNumber(std::string_view option, std::string_view text, std::string_view unit,
                     double low, double high, const char* right, double& value);

/// What stands behind an option's colon, as in "shape=sine,hz=0.25". Views of the text that was
/// read, which must outlive this.
class KeyValues {
public:
    /// Reads KEY=VALUE,KEY=VALUE; an empty text has none. Case, spaces and punctuation of a key do
    /// not matter. The failure names what is unknown, given twice, or without a value. others: what
    /// else keys may be called, which only leads to them. keys must outlive this and not be empty.
    static Result<KeyValues> read(std::string_view text, std::span<const std::string_view> keys,
                                  std::span<const OtherWords> others);

    /// None where the key was not given.
    std::optional<std::string_view> find(std::string_view key) const;

    /// As the function; value stays as it is where the key was not given.
    Complaint readNumber(std::string_view key, std::string_view unit, double low, double high,
                         const char* right, std::optional<double>& value) const;
    Complaint readNumber(std::string_view key, std::string_view unit, double low, double high,
                         const char* right, float& value) const;

private:
    struct Entry {
        std::string_view key, value;
    };
    Complaint add(std::string_view part, std::span<const std::string_view> keys,
                  std::span<const OtherWords> others);

    std::vector<Entry> entries_;
};

} // namespace zephyra
