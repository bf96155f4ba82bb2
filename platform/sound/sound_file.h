// SoundFile: a sound file read into memory as one mono signal.
#pragma once

#include "platform/files/streamed_files.h"
#include "platform/text/result.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace zephyra {

/// The extensions of the files that a sample library offers, in the order in which it lists them.
/// readSoundFile also takes FLAC, Ogg and AU by path.
inline constexpr std::array<std::string_view, 8> kSoundFileExtensions = {
    "raw", "wav", "aif", "aiff", "aifc", "caf", "mp3", "m4a"};

/// The longest sound that is read: 101 minutes at 44100 Hz, 1 GiB as floats. A longer one is
/// refused, so that no file can ask for more memory than this (twice as much while it is read).
inline constexpr std::uint64_t kMaxSoundFileFrames = std::uint64_t{1} << 28;

/// Hz. No sound is kept below the one (some readers mend a rate of 0 to 1), no converter is faster
/// than the other; a header that says otherwise is damaged.
inline constexpr double kMinSoundFileRate = 100.0;
inline constexpr double kMaxSoundFileRate = 768000.0;

/// The most channels of a file, which is libsndfile's own limit.
inline constexpr std::uint32_t kMaxSoundFileChannels = 1024;

/// How the samples of a headerless file (extension raw) lie: signed little-endian integers.
struct RawSoundFormat {
    double sampleRate = 44100.0; ///< Hz, rounded to a whole number
    std::uint32_t channels = 1;  ///< interleaved
    std::uint32_t bits = 16;     ///< 8, 16, 24 or 32
};

struct SoundFileInfo {
    std::string format; ///< for people: "WAV, Signed 16 bit PCM"
    std::uint32_t channels = 0;
    double sampleRate = 0.0;  ///< Hz
    std::uint64_t frames = 0; ///< 0 when only reading the whole file can tell
};

struct SoundFileOptions {
    RawSoundFormat raw = {};
    /// At most kMaxSoundFileFrames; more counts as that.
    std::uint64_t maxFrames = kMaxSoundFileFrames;
    /// Called on the reading thread from time to time with the share read so far (0 to 1, never
    /// falling, 1 at the end). A false answer ends the reading with a failure.
    std::function<bool(double)> progress = {};
    /// Called on the reading thread with each block as it is in the file: frames interleaved frames
    /// of info.channels finite samples, valid during the call. Empty when nobody wants them.
    std::function<void(const SoundFileInfo& info, const float* interleaved, std::uint32_t frames)>
        onBlock = {};
};

struct SoundFile {
    SoundFileInfo info;         ///< of the file; frames is what was read
    std::vector<float> samples; ///< the mean of the channels, frame by frame; all finite
};

/// Reads the file at path: WAV, AIFF, AIFC, CAF, MP3, M4A (AAC or Apple Lossless), FLAC, Ogg and AU
/// by their content whatever their name, and headerless files by the extension raw in any case.
/// Integers are scaled so that full scale is 1; floats are taken as they are and may exceed it. The
/// file's own rate is kept. A file that ends early is read up to there if that is at least one
/// frame.
///
/// Fails with one line for what cannot be opened, is no regular file, is empty, is none of these
/// formats, is damaged, claims an absurd rate or channel count, is longer than options.maxFrames,
/// or holds a sample that is infinite or not a number. MAIN or WORKER.
Result<SoundFile> readSoundFile(const std::filesystem::path& path,
                                const SoundFileOptions& options = {});

/// The file opened, if it may be one that readSoundFile takes, for whoever needs its bytes for more
/// than its sound; also one that streams took. Fails as that does. MAIN or WORKER.
Result<FileBytes> openSoundFile(const std::filesystem::path& path,
                                const StreamedFiles& streams = {});

/// The first bytes of a file, from which its type is seen.
inline constexpr std::size_t kSoundHeadBytes = 12;

/// Whether readSoundFile takes a file of that name that begins with head (kSoundHeadBytes, or all
/// of it) for a sound, damaged or not. Pure.
bool beginsLikeSound(const std::filesystem::path& name, std::span<const std::byte> head);

/// The same of an opened file, which is loaded where it is small. M4A is opened again by its name,
/// by a reader of its own. MAIN or WORKER.
Result<SoundFile> readSoundFile(FileBytes& file, const SoundFileOptions& options = {});

/// What the file's header says; its samples are not read and may prove fewer or damaged. Failures
/// are readSoundFile's. MAIN or WORKER.
Result<SoundFileInfo> readSoundFileInfo(const std::filesystem::path& path,
                                        const RawSoundFormat& raw = {});
Result<SoundFileInfo> readSoundFileInfo(const FileBytes& file, const RawSoundFormat& raw = {});

} // namespace zephyra
