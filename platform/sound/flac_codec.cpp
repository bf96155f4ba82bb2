#include "platform/sound/flac_codec.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <memory>
#include <sndfile.h>
#include <string_view>

namespace zephyra {

namespace {

constexpr double kFullScale = 8388608.0; // 2^23, the range of 24 bits
constexpr int kUnusedBits = 8;           // libsndfile's whole samples are 32 bits, aligned left
constexpr std::size_t kBlock = 65536;    // samples coded at a time

struct SndfileCloser {
    void operator()(SNDFILE* file) const noexcept { sf_close(file); }
};
using SndfileHandle = std::unique_ptr<SNDFILE, SndfileCloser>;

/// Bytes in memory as libsndfile's file. Reading is bounded by what is there; writing grows it.
class MemoryFile {
public:
    std::vector<std::byte> bytes;

    SndfileHandle open(int mode, SF_INFO& info) {
        static SF_VIRTUAL_IO calls = {length, seek, read, write, tell};
        return SndfileHandle(sf_open_virtual(&calls, mode, &info, this));
    }

private:
    static MemoryFile& of(void* self) { return *static_cast<MemoryFile*>(self); }

    static sf_count_t length(void* self) { return static_cast<sf_count_t>(of(self).bytes.size()); }
    static sf_count_t tell(void* self) { return static_cast<sf_count_t>(of(self).at_); }

    static sf_count_t seek(sf_count_t offset, int whence, void* self) {
        const sf_count_t base = whence == SEEK_SET   ? 0
                                : whence == SEEK_CUR ? tell(self)
                                                     : length(self);
        if (offset < -base || offset > length(self) - base) return -1;
        of(self).at_ = static_cast<std::size_t>(base + offset);
        return base + offset;
    }

    static sf_count_t read(void* target, sf_count_t count, void* self) {
        const sf_count_t there = std::clamp<sf_count_t>(count, 0, length(self) - tell(self));
        if (there > 0)
            std::memcpy(target, of(self).bytes.data() + of(self).at_,
                        static_cast<std::size_t>(there));
        of(self).at_ += static_cast<std::size_t>(there);
        return there;
    }

    /// Called through C, which no exception may cross.
    static sf_count_t write(const void* source, sf_count_t count, void* self) noexcept try {
        if (count <= 0) return 0;
        MemoryFile& file = of(self);
        const std::size_t end = file.at_ + static_cast<std::size_t>(count);
        if (end > file.bytes.size()) file.bytes.resize(end);
        std::memcpy(file.bytes.data() + file.at_, source, static_cast<std::size_t>(count));
        file.at_ = end;
        return count;
    } catch (const std::bad_alloc&) {
        return 0;
    }

    std::size_t at_ = 0;
};

bool isFlacRate(double rate) {
    const double step = rate > 65535.0 ? 10.0 : 1.0; // what a frame's header can say
    return rate >= 1.0 && rate <= 655350.0 && std::fmod(rate, step) == 0.0; // false for NaN
}

int quantised(double sample) {
    const double whole = std::round(sample * kFullScale);
    const auto bits = static_cast<int>(std::clamp(whole, -kFullScale, kFullScale - 1.0));
    return bits * (1 << kUnusedBits);
}

} // namespace

Result<FlacSound> encodeFlac(std::span<const float> samples, double rate) {
    if (samples.empty()) return Failure{"a sound without samples cannot be kept; one is needed"};
    if (!isFlacRate(rate))
        return Failure{"a sound at this rate cannot be kept; a whole number of 1 to 65535 Hz, or "
                       "a multiple of 10 to 655350 Hz, would be right"};
    FlacSound sound;
    for (const float sample : samples) {
        if (!std::isfinite(sample))
            return Failure{"a sound with a sample that is not finite cannot be kept; mend it"};
        sound.scale = std::max(sound.scale, std::abs(double{sample}));
    }

    SF_INFO info{};
    info.samplerate = static_cast<int>(rate);
    info.channels = 1;
    info.format = SF_FORMAT_FLAC | SF_FORMAT_PCM_24;
    MemoryFile memory;
    SndfileHandle file = memory.open(SFM_WRITE, info);
    bool isWritten = file != nullptr;
    std::vector<int> block;
    for (std::size_t at = 0; isWritten && at < samples.size(); at += block.size()) {
        block.resize(std::min(kBlock, samples.size() - at));
        for (std::size_t i = 0; i < block.size(); ++i)
            block[i] = quantised(samples[at + i] / sound.scale);
        const auto count = static_cast<sf_count_t>(block.size());
        isWritten = sf_write_int(file.get(), block.data(), count) == count;
    }
    if (!isWritten || sf_close(file.release()) != 0)
        return Failure{"the sound cannot be encoded as FLAC; there may be too little memory"};
    sound.bytes = std::move(memory.bytes);
    return sound;
}

Result<DecodedFlac> decodeFlac(std::span<const std::byte> bytes, double scale,
                               std::uint64_t maxFrames) {
    constexpr std::string_view magic = "fLaC";
    if (bytes.size() < magic.size() || std::memcmp(bytes.data(), magic.data(), magic.size()) != 0)
        return Failure{"the sound is no FLAC; FLAC bytes are needed"};
    const Failure damaged{"the FLAC sound is damaged; keep it anew"};
    const double level = std::isfinite(scale) && scale >= 1.0 ? scale : 1.0;

    MemoryFile memory;
    memory.bytes.assign(bytes.begin(), bytes.end());
    SF_INFO info{};
    const SndfileHandle file = memory.open(SFM_READ, info);
    if (!file || info.frames < 1) return damaged;
    if (info.channels != 1)
        return Failure{"the FLAC sound has " + std::to_string(info.channels) +
                       " channels; 1 would be right"};
    const auto frames = static_cast<std::uint64_t>(info.frames);
    if (frames > maxFrames)
        return Failure{"the FLAC sound has " + std::to_string(frames) + " frames; at most " +
                       std::to_string(maxFrames) + " are taken"};

    DecodedFlac sound{{}, static_cast<double>(info.samplerate)};
    std::vector<int> block(kBlock);
    while (sound.samples.size() < frames) {
        const sf_count_t got =
            sf_read_int(file.get(), block.data(), static_cast<sf_count_t>(kBlock));
        if (got <= 0 || sf_error(file.get()) != SF_ERR_NO_ERROR) return damaged;
        for (sf_count_t i = 0; i < got; ++i) {
            const double sample =
                block[static_cast<std::size_t>(i)] / (kFullScale * (1 << kUnusedBits));
            sound.samples.push_back(static_cast<float>(sample * level));
        }
    }
    return sound;
}

} // namespace zephyra
