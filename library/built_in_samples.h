// kBuiltInSamples: the samples that come with the program.
#pragma once

#include <array>
#include <string_view>

namespace zephyra {

/// File names in the resource folder, in the order in which the sample library lists them.
inline constexpr std::array<std::string_view, 2> kBuiltInSamples = {"Zephyra_Sample08.mp3",
                                                                    "Blackbird.mp3"};

} // namespace zephyra
