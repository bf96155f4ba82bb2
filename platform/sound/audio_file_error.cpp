#include "platform/sound/audio_file_error.h"

#include "platform/text/odd_bytes.h"

#include <algorithm>
#include <array>
#include <cerrno>

namespace zephyra {

namespace {

using namespace audio_file_error;

constexpr std::array kErrors = {
    AudioFileError{none, "no error"},
    AudioFileError{unspecified, "the file could not be written; name another file"},
    AudioFileError{
        unsupportedFileType,
        "unknown file type; AIFC, AIFF, NeXT, caff, Sd2f, WAVE, m4af, flac and Oggv can be "
        "written"},
    AudioFileError{unsupportedDataFormat,
                   "this type cannot hold such a rate, channel count or word length; 44100 Hz, 2 "
                   "channels and 16 bits fit every type"},
    AudioFileError{permission, "no permission, or no ordinary file; name a file in a folder that "
                               "you may write to"},
    AudioFileError{sizeBeyond32Bits, "this type holds at most 4 gigabytes; caff holds more"},
    AudioFileError{diskFull, "the disk is full; free some space or name another disk"},
    AudioFileError{notOpen, "no file is open; open one first"},
    AudioFileError{folderNotFound, "the folder does not exist; make it, or name one that does"},
    AudioFileError{badParameter, "too few buffers or bytes for the frames; hand one buffer per "
                                 "channel"},
    AudioFileError{outOfMemory, "out of memory; write fewer frames at once"},
    AudioFileError{codecUnavailable, "the encoder is not installed; use a linear type"},
    AudioFileError{invalidOperationOrder, "set the client format before writing"},
};

} // namespace

std::span<const AudioFileError> audioFileErrors() noexcept {
    return kErrors;
}

const char* audioFileErrorMeaning(OSStatus code) noexcept {
    const auto found = std::ranges::find(kErrors, code, &AudioFileError::code);
    return found != kErrors.end() ? found->meaning : audioFileErrorMeaning(unspecified);
}

OSStatus audioFileStatus(std::error_code error) noexcept {
    if (!error) return none;
    if (error == std::errc::no_such_file_or_directory || error == std::errc::not_a_directory)
        return folderNotFound;
    if (error == std::errc::permission_denied || error == std::errc::operation_not_permitted ||
        error == std::errc::read_only_file_system || error == std::errc::is_a_directory ||
        error == std::errc::invalid_argument)
        return permission;
    if (error == std::errc::no_space_on_device || error == std::errc::file_too_large ||
        error == std::error_code(EDQUOT, std::generic_category()))
        return diskFull;
    if (error == std::errc::not_enough_memory) return outOfMemory;
    return unspecified;
}

Failure writeFailure(const std::filesystem::path& file, OSStatus code) {
    std::error_code ignored;
    const bool isFolder = !file.has_filename() || std::filesystem::is_directory(file, ignored);
    return {"cannot write " + shownFile(file) + ": " +
            (isFolder ? "it is a folder; name a file in it, as in " + shownFile(file / "out.wav")
                      : audioFileErrorMeaning(code))};
}

} // namespace zephyra
