// bankNameOf and its kin: what a bank is called, and what its file is.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace zephyra {

// A bank's name is its file name with extension; what a session, a line or a shell could not hold
// in it stands there as \xHH (platform/text/odd_bytes.h). No two files have the same one.

inline constexpr const char* kInvalidName = "Invalid file name";

/// The name of the bank in that file; nothing for a file that is no bank's. Any thread.
std::optional<std::string> bankNameOf(std::string_view fileName);

/// The file of a bank that is called name. Any thread.
std::string bankFileName(std::string_view name);

/// Whether a bank that is there may be called so: others can be neither shown nor kept in a
/// session, or would leave the folder. Any thread.
bool isBankName(std::string_view name);

/// Whether a bank may be called so from now on: a plain file name, which is neither "." nor ".."
/// without its extension. Any thread.
bool isNewBankName(std::string_view name);

} // namespace zephyra
