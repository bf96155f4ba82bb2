// nearestName: forgives how a name is typed, and guesses what a wrong one was meant to be.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace zephyra {

/// name without case, spaces and punctuation: "Dry/Wet" and "dry wet" are both "drywet".
std::string plainName(std::string_view name);

/// name between double quotes, for messages; a long one is cut.
std::string inQuotes(std::string_view name);

/// How many letters must be inserted, removed, replaced or swapped with their neighbour to turn one
/// text into the other.
std::size_t editDistance(std::string_view from, std::string_view to);

/// Of names, the one whose plain form is the fewest edits from that of name; the earlier of two
/// that are equally near. names must not be empty.
std::string_view nearestName(std::string_view name, std::span<const std::string_view> names);

} // namespace zephyra
