// Reads MPEG-4 sound files by the AAC module.

#include "platform/sound/aac_codec.h"
#include "platform/sound/sound_file_source.h"

namespace zephyra {
namespace {

constexpr std::uint32_t kReasonSize = 200; // bytes; the module cuts longer texts

class AacSource final : public SoundFileSource {
public:
    AacSource(const AacModule& module, void* reader, const AacTrack& track)
        : module_(module), reader_(reader) {
        info_ = {std::string("M4A, ") + track.codecName, track.channels, track.sampleRate,
                 track.claimedFrames};
    }
    ~AacSource() override { module_.closeReader(reader_); }
    AacSource(const AacSource&) = delete;
    AacSource& operator=(const AacSource&) = delete;

    Result<std::uint32_t> read(float* interleaved, std::uint32_t maxFrames) override {
        char reason[kReasonSize] = "";
        std::uint32_t frames = 0;
        if (module_.read(reader_, interleaved, maxFrames, &frames, reason, kReasonSize) != 0)
            return Failure{std::string(reason) + "; export it again as 16-bit WAV"};
        return frames;
    }

private:
    const AacModule& module_;
    void* reader_;
};

} // namespace

SoundFileSourceResult openAacSource(const std::filesystem::path& path) {
    const auto module = aacModule();
    if (!module) return Failure{"cannot be read: " + module.message()};
    char reason[kReasonSize] = "";
    AacTrack track;
    void* reader = nullptr;
    if (module.value()->openReader(path.c_str(), &track, &reader, reason, kReasonSize) != 0)
        return Failure{std::string(reason) + "; export it again as 16-bit WAV"};
    return std::unique_ptr<SoundFileSource>(new AacSource(*module.value(), reader, track));
}

} // namespace zephyra
