// foldCase: text in the form in which upper and lower case are alike.
#pragma once

#include <string>
#include <string_view>

namespace zephyra {

/// Two texts that differ in case alone, or in how accents are put together, fold to the same. Text
/// that is not UTF-8 comes back unchanged. Any thread but RENDER; throws std::bad_alloc.
std::string foldCase(std::string_view text);

} // namespace zephyra
