// rightOption and rightForm: what to write instead of what people type from habit.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace CLI {
class App;
}

namespace zephyra {

// Of `render`. Nothing is taken that might be meant otherwise: they only say the form that is
// right. MAIN.

/// For an option that there is not, as typed: what other programs call one of ours, or a control's
/// name, also misspelt. value: what stood behind it, empty for nothing. None where nothing is known
/// of it.
std::optional<std::string> rightOption(std::string_view option, std::string_view value,
                                       const CLI::App& render);

/// For the words of a wrong command line of render: "write --set Density=100" for --set Density
/// 100, "write --output" for -output. None where they hold nothing of the kind.
std::optional<std::string> rightForm(std::span<const std::string> words, const CLI::App& render);

} // namespace zephyra
