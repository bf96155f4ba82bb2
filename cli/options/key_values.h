// KeyValues: what an option's text says after its colon, as in "shape=sine,hz=0.25".
#pragma once

#include "cli/options/complaint.h"

#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace zephyra {

/// Views of the text that was read, which must outlive this.
class KeyValues {
public:
    /// Reads KEY=VALUE,KEY=VALUE; an empty text has none. Case, spaces and punctuation of a key do
    /// not matter. The failure names what is unknown, given twice, or without a value. keys must
    /// outlive this and not be empty.
    static Result<KeyValues> read(std::string_view text, std::span<const std::string_view> keys);

    /// None where the key was not given.
    std::optional<std::string_view> find(std::string_view key) const;

    /// A number from low to high; value stays as it is where the key was not given. right says what
    /// would be right: "Hz from 0.016 to 24".
    Complaint readNumber(std::string_view key, double low, double high, const char* right,
                         std::optional<double>& value) const;
    Complaint readNumber(std::string_view key, double low, double high, const char* right,
                         float& value) const;

private:
    struct Entry {
        std::string_view key, value;
    };
    Complaint add(std::string_view part, std::span<const std::string_view> keys);

    std::vector<Entry> entries_;
};

} // namespace zephyra
