// AudioFile and ExtAudioFile: the two services that write a sound file, by type and data format.
//
// Order of calls: AudioFileCreate, ExtAudioFileWrapAudioFileID, ExtAudioFileSetProperty,
// ExtAudioFileWrite as often as needed, AudioFileOptimize, ExtAudioFileDispose, AudioFileClose. The
// file stands under its name from AudioFileClose on; a handle that is dropped leaves what was there
// before. Every function is MAIN or WORKER and returns 0 or a code of audio_file_error.h.
#pragma once

#include "platform/sound/audio_buffer_list.h"
#include "platform/sound/stream_description.h"

#include <cstdint>
#include <filesystem>
#include <memory>

namespace zephyra {

class AudioFile;
class ExtAudioFile;
class Log;

struct AudioFileDeleter {
    void operator()(AudioFile* file) const noexcept;
};
struct ExtAudioFileDeleter {
    void operator()(ExtAudioFile* file) const noexcept;
};

/// The file itself. Dropping the handle abandons the file.
using AudioFileID = std::unique_ptr<AudioFile, AudioFileDeleter>;
/// The side that takes the caller's samples; of no use after its AudioFileID is gone.
using ExtAudioFileRef = std::unique_ptr<ExtAudioFile, ExtAudioFileDeleter>;

/// The file types that can be written.
namespace audio_file_type {
inline constexpr FourCharCode aifc = fourCC("AIFC"); ///< 'ima4', 4 bits, 1 or 2 channels
inline constexpr FourCharCode aiff = fourCC("AIFF");
inline constexpr FourCharCode next = fourCC("NeXT");
inline constexpr FourCharCode caff = fourCC("caff");
inline constexpr FourCharCode sd2f = fourCC("Sd2f"); ///< with its side file "._" + name
inline constexpr FourCharCode wave = fourCC("WAVE");
inline constexpr FourCharCode m4af = fourCC("m4af"); ///< 'aac ', low complexity
inline constexpr FourCharCode flac = fourCC("flac"); ///< 'flac', 16 bits
inline constexpr FourCharCode ogg = fourCC("Oggv");  ///< 'vorb', Vorbis
} // namespace audio_file_type

/// Begins a new file for path, which replaces an existing one when it is closed. Linear formats
/// hold 8, 16, 24 or 32 bits, WAVE also 32-bit floats. WAVE's 8-bit samples are stored with an
/// offset of 128, the only form its readers know. Rates are rounded to whole Hz; flac holds those
/// to 65535 and multiples of 10 to 655350, ogg 8000 to 200000. 'typ?' and 'fmt?' tell what does not
/// go together; file stays empty on failure. log, unless null, hears what the codec of m4af says in
/// words, and must outlive the file.
OSStatus AudioFileCreate(const std::filesystem::path& path, FourCharCode type,
                         const StreamDescription& format, AudioFileID& file, Log* log = nullptr);

/// Makes the side that samples are handed to. file must live as long as samples are written.
OSStatus ExtAudioFileWrapAudioFileID(const AudioFileID& file, ExtAudioFileRef& wrapped);

/// Sets the client data format, that of the samples handed over: non-interleaved, with the file's
/// rate and channels, 16-bit signed integers, or 32-bit floats for a float file and for 'vorb'.
/// Others get 'fmt?'.
OSStatus ExtAudioFileSetProperty(const ExtAudioFileRef& file, const StreamDescription& client);

/// Appends frames from buffers, one per channel. 16-bit samples fill the upper bits of longer
/// words; of 8-bit words the lower bits are cut. After a failure the file only takes further
/// failures.
OSStatus ExtAudioFileWrite(const ExtAudioFileRef& file, std::uint32_t frames,
                           const AudioBufferList& buffers);

/// Puts the file's data in the order of reading. Every type is written in that order already, so
/// this only repeats an earlier failure.
OSStatus AudioFileOptimize(const AudioFileID& file);

/// Ends the client side; the file stays open.
OSStatus ExtAudioFileDispose(ExtAudioFileRef file);

/// Completes the file and puts it under its name, SD2's side file first. After any earlier failure,
/// or one now, the file is abandoned and the failure returned.
OSStatus AudioFileClose(AudioFileID file);

} // namespace zephyra
