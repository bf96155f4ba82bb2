// rightCommand: what to write instead of a command that people know from elsewhere.
#pragma once

#include <optional>
#include <string_view>

namespace zephyra {

/// For word where one of command's own commands should stand; command is "" for the program itself.
/// None where nothing is known of it. Any thread.
std::optional<std::string_view> rightCommand(std::string_view command, std::string_view word);

} // namespace zephyra
