// plainName, foldCase and nearestName: names compared as people mean them, however they type them.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace zephyra {

// Any thread but RENDER.

/// name without case, spaces and punctuation: "Dry/Wet" and "dry wet" are both "drywet".
std::string plainName(std::string_view name);

/// Two texts that differ in case alone, or in how accents are put together, fold to the same. Text
/// that is not UTF-8 comes back unchanged. Throws std::bad_alloc.
std::string foldCase(std::string_view text);

/// How many letters must be inserted, removed, replaced or swapped with their neighbour to turn one
/// text into the other.
std::size_t editDistance(std::string_view from, std::string_view to);

/// Of names, the one whose plain form is the fewest edits from that of name; the earlier of two
/// that are equally near. Those that hold name, of three letters at least, are nearer than all
/// others: "owl" means "Night Owl". names must not be empty.
std::string_view nearestName(std::string_view name, std::span<const std::string_view> names);

/// Other words for a name, in their plain form and with blanks between them.
struct OtherWords {
    std::string_view words, name;
};

/// Whether plain, a plain form, is one of words, which have blanks between them.
bool hasWord(std::string_view words, std::string_view plain);

/// What to write instead of typed, which is none of names: "it is called rise" where others has the
/// word, else "the nearest is "sine"". names must not be empty.
std::string rightName(std::string_view typed, std::span<const std::string_view> names,
                      std::span<const OtherWords> others);

} // namespace zephyra
