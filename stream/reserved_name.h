// reserveName: an empty sound file under a name that nobody else has or gets.
#pragma once

#include "platform/text/result.h"

#include <filesystem>
#include <string>

namespace zephyra {

/// Which name is taken when it is free.
enum class FirstName {
    plain,    ///< "base.wav", then "base 1.wav"
    numbered, ///< "base 1.wav"
};

/// Makes the folder when missing and the file here and now, so that no other program takes the name
/// meanwhile; numbers go on behind those in use. base must be a file name. Fails with one line that
/// names the file or folder. MAIN or WORKER.
Result<std::filesystem::path> reserveName(const std::filesystem::path& folder,
                                          const std::string& base, FirstName first);

} // namespace zephyra
