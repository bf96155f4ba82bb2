// reserveName and SoundKeeping: how a sound that stands in no file gets one of its own.
#pragma once

#include "platform/text/result.h"
#include "stream/stream_controller.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

namespace zephyra {

/// Which name is taken when it is free.
enum class FirstName {
    plain,    ///< "base.wav", then "base 1.wav"
    numbered, ///< "base 1.wav"
};

/// An empty sound file: makes the folder when missing and the file here and now, so that no other
/// program takes the name meanwhile; numbers go on behind those in use. base must be a file name.
/// Fails with one line that names the file or folder. MAIN or WORKER.
Result<std::filesystem::path> reserveName(const std::filesystem::path& folder,
                                          const std::string& base, FirstName first);

/// A snapshot can only name files; what stands in none is written before one is made: a sample that
/// came out of a state without its file, and what live input captured once LIVE is off, as 32-bit
/// float WAVs in the shared folder, under a free name made from the lost file's or "Rec N". What
/// plays goes on: the sample is the same, a captured sound becomes a sample of equal length and
/// frames (silence where nothing was heard yet) that Normalize leaves alone. Order of calls:
/// construct, write, finish.
class SoundKeeping {
public:
    /// Takes what there is to be written. MAIN.
    explicit SoundKeeping(MOK_SCRUB_GRANULATOR& stream);
    /// False for any other sound: then the rest does nothing.
    bool isNeeded() const noexcept { return onlyCopy_.sound || isCaptured_; }
    /// Any thread but RENDER.
    void write();
    /// Gives the stream of the beginning its files, and tells every instance; a file whose sound it
    /// no longer has is removed. Fails with one line that names the file. MAIN.
    Result<void> finish(MOK_SCRUB_GRANULATOR& stream);

private:
    struct Kept {
        std::shared_ptr<const mokSample> sound = {}; // null for none
        Result<SampleReference> file = SampleReference();
    };
    void nameOnlyCopy(MOK_SCRUB_GRANULATOR& stream);
    void playCaptured(MOK_SCRUB_GRANULATOR& stream);
    static void dropFile(const SampleReference& kept);

    const std::filesystem::path shared_;
    const SampleReference lost_;
    Kept onlyCopy_, captured_;
    bool isCaptured_ = false;
    CapturedMemory::Version heard_ = {};
    std::optional<PlayableSound> playable_; // what was captured
};

/// All of it at once. MAIN.
Result<void> keepSoundAsFile(MOK_SCRUB_GRANULATOR& stream);

} // namespace zephyra
