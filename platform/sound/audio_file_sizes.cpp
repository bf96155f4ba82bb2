#include "platform/sound/audio_file_sizes.h"

#include "platform/sound/audio_file.h"
#include "platform/sound/audio_file_error.h"

#include <fstream>

namespace zephyra {

namespace {

/// How the chunks of a file type follow each other.
struct ChunkLayout {
    std::streamoff first;    ///< where the first chunk starts
    std::uint32_t sizeBytes; ///< of a chunk's size field
    bool padsToEven;
};
constexpr ChunkLayout kAiffChunks = {12, 4, true};
constexpr ChunkLayout kCaffChunks = {8, 8, false};
constexpr std::uint64_t kFramesPerIma4Packet = 64;

std::uint64_t readBigEndian(std::fstream& file, std::uint32_t bytes) {
    std::uint64_t value = 0;
    while (bytes-- > 0) value = value << 8 | static_cast<std::uint64_t>(file.get() & 0xFF);
    return value;
}

void writeBigEndian(std::fstream& file, std::streamoff position, std::uint64_t value,
                    std::uint32_t bytes) {
    file.seekp(position);
    while (bytes-- > 0) file.put(static_cast<char>(value >> (8 * bytes)));
}

/// Where the size field of the chunk named id stands; the file is in a failed state without one.
std::streamoff findSizeField(std::fstream& file, const ChunkLayout& layout, FourCharCode id) {
    for (std::streamoff chunk = layout.first; file;) {
        file.seekg(chunk);
        const std::uint64_t found = readBigEndian(file, 4);
        const std::uint64_t size = readBigEndian(file, layout.sizeBytes);
        if (file && found == id) return chunk + 4;
        const std::uint64_t pad = layout.padsToEven ? size & 1 : 0;
        chunk += static_cast<std::streamoff>(4 + layout.sizeBytes + size + pad);
    }
    return 0;
}

/// After the chunk's size and the channel count.
void writeCommonFrames(std::fstream& file, std::uint64_t count) {
    writeBigEndian(file, findSizeField(file, kAiffChunks, fourCC("COMM")) + 4 + 2, count, 4);
}

void correctAiff(std::fstream& file, std::uint64_t frames, std::uint64_t dataBytes) {
    constexpr std::uint32_t kOffsetAndBlockSize = 8; // fields before the samples
    writeCommonFrames(file, frames);
    const std::streamoff samples = findSizeField(file, kAiffChunks, fourCC("SSND"));
    writeBigEndian(file, samples, kOffsetAndBlockSize + dataBytes, kAiffChunks.sizeBytes);
}

/// Returns where the file ends.
std::streamoff correctCaff(std::fstream& file, std::uint64_t dataBytes) {
    constexpr std::uint32_t kEditCount = 4; // field before the samples
    const std::streamoff size = findSizeField(file, kCaffChunks, fourCC("data"));
    writeBigEndian(file, size, kEditCount + dataBytes, kCaffChunks.sizeBytes);
    return size + static_cast<std::streamoff>(kCaffChunks.sizeBytes + kEditCount + dataBytes);
}

} // namespace

OSStatus correctSizes(const std::filesystem::path& path, FourCharCode type, std::uint64_t frames,
                      std::uint64_t dataBytes) {
    const bool padded =
        (type == audio_file_type::aiff || type == audio_file_type::caff) && dataBytes % 2 != 0;
    if (!padded && type != audio_file_type::aifc) return audio_file_error::none;

    std::fstream file(path, std::ios::in | std::ios::out | std::ios::binary);
    std::streamoff end = 0; // 0: stays where it is
    if (type == audio_file_type::aifc)
        writeCommonFrames(file, (frames + kFramesPerIma4Packet - 1) / kFramesPerIma4Packet);
    else if (type == audio_file_type::aiff)
        correctAiff(file, frames, dataBytes);
    else
        end = correctCaff(file, dataBytes);
    file.close();
    if (!file) return audio_file_error::unspecified;
    std::error_code error;
    if (end != 0) std::filesystem::resize_file(path, static_cast<std::uintmax_t>(end), error);
    return audioFileStatus(error);
}

} // namespace zephyra
