// AudioFileError: every code that the sound-file services return, with its meaning.
#pragma once

#include "platform/text/four_char_code.h"
#include "platform/text/result.h"

#include <filesystem>
#include <span>
#include <system_error>

namespace zephyra {

/// A code, and what it means and what would be right, as the second half of a line for a person.
struct AudioFileError {
    OSStatus code;
    const char* meaning;
};

/// The codes by name. Most are four characters; the small negative ones are older.
namespace audio_file_error {
constexpr OSStatus status(const char (&text)[5]) noexcept {
    return static_cast<OSStatus>(fourCC(text));
}
inline constexpr OSStatus none = 0;
inline constexpr OSStatus unspecified = status("wht?");
inline constexpr OSStatus unsupportedFileType = status("typ?");
inline constexpr OSStatus unsupportedDataFormat = status("fmt?");
inline constexpr OSStatus permission = status("prm?");
inline constexpr OSStatus sizeBeyond32Bits = status("off?");
inline constexpr OSStatus diskFull = -34;
inline constexpr OSStatus notOpen = -38;
inline constexpr OSStatus folderNotFound = -43;
inline constexpr OSStatus badParameter = -50;
inline constexpr OSStatus outOfMemory = -108;
inline constexpr OSStatus codecUnavailable = -66561;
inline constexpr OSStatus invalidOperationOrder = -66566;
} // namespace audio_file_error

/// The whole table, in no particular order. Any thread.
std::span<const AudioFileError> audioFileErrors() noexcept;

/// The meaning of code; an unknown one means what 'wht?' does. Any thread.
const char* audioFileErrorMeaning(OSStatus code) noexcept;

/// The code for an error of the operating system; 0 for no error. Any thread.
OSStatus audioFileStatus(std::error_code error) noexcept;

/// The line for a person when writing file failed with code. MAIN or WORKER.
Failure writeFailure(const std::filesystem::path& file, OSStatus code);

} // namespace zephyra
