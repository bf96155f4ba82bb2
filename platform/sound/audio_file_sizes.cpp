#include "platform/sound/audio_file_sizes.h"

#include "platform/files/written_file.h"
#include "platform/sound/audio_file.h"
#include "platform/sound/audio_file_error.h"

#include <array>
#include <optional>
#include <span>

namespace zephyra {

namespace {

/// How the chunks of a file type follow each other.
struct ChunkLayout {
    std::uint64_t first;     ///< where the first chunk starts
    std::uint32_t sizeBytes; ///< of a chunk's size field
    bool padsToEven;
};
constexpr ChunkLayout kAiffChunks = {12, 4, true};
constexpr ChunkLayout kCaffChunks = {8, 8, false};
constexpr std::uint32_t kMostFieldBytes = 8;

std::optional<std::uint64_t> readBigEndian(WrittenFile& file, std::uint32_t bytes) {
    std::array<std::byte, kMostFieldBytes> field;
    if (file.read(std::span(field).first(bytes)) < bytes) return std::nullopt;
    std::uint64_t value = 0;
    for (std::uint32_t i = 0; i < bytes; ++i)
        value = value << 8 | std::to_integer<std::uint64_t>(field[i]);
    return value;
}

bool writeBigEndian(WrittenFile& file, std::uint64_t position, std::uint64_t value,
                    std::uint32_t bytes) {
    std::array<std::byte, kMostFieldBytes> field;
    for (std::uint32_t i = bytes; i-- > 0; value >>= 8) field[i] = static_cast<std::byte>(value);
    file.seek(position);
    return file.write(std::span(field).first(bytes));
}

/// Where the size field of the chunk named id stands.
std::optional<std::uint64_t> findSizeField(WrittenFile& file, const ChunkLayout& layout,
                                           FourCharCode id) {
    for (std::uint64_t chunk = layout.first;;) {
        file.seek(chunk);
        const auto found = readBigEndian(file, 4);
        const auto size = readBigEndian(file, layout.sizeBytes);
        if (!size) return std::nullopt;
        if (found == id) return chunk + 4;
        const std::uint64_t pad = layout.padsToEven ? *size & 1 : 0;
        chunk += 4 + layout.sizeBytes + *size + pad;
    }
}

/// After the chunk's size and the channel count.
bool writeCommonFrames(WrittenFile& file, std::uint64_t count) {
    const auto size = findSizeField(file, kAiffChunks, fourCC("COMM"));
    return size && writeBigEndian(file, *size + 4 + 2, count, 4);
}

bool correctAiff(WrittenFile& file, std::uint64_t frames, std::uint64_t dataBytes) {
    constexpr std::uint32_t kOffsetAndBlockSize = 8; // fields before the samples
    if (!writeCommonFrames(file, frames)) return false;
    const auto size = findSizeField(file, kAiffChunks, fourCC("SSND"));
    return size &&
           writeBigEndian(file, *size, kOffsetAndBlockSize + dataBytes, kAiffChunks.sizeBytes);
}

bool correctCaff(WrittenFile& file, std::uint64_t dataBytes) {
    constexpr std::uint32_t kEditCount = 4; // field before the samples
    const auto size = findSizeField(file, kCaffChunks, fourCC("data"));
    return size && writeBigEndian(file, *size, kEditCount + dataBytes, kCaffChunks.sizeBytes) &&
           file.cut(*size + kCaffChunks.sizeBytes + kEditCount + dataBytes);
}

bool correct(WrittenFile& file, FourCharCode type, std::uint64_t frames, std::uint64_t dataBytes) {
    if (type == audio_file_type::aifc)
        return writeCommonFrames(file, (frames + kFramesPerIma4Packet - 1) / kFramesPerIma4Packet);
    if (dataBytes % 2 == 0) return true;
    if (type == audio_file_type::aiff) return correctAiff(file, frames, dataBytes);
    return type != audio_file_type::caff || correctCaff(file, dataBytes);
}

} // namespace

OSStatus correctSizes(WrittenFile& file, FourCharCode type, std::uint64_t frames,
                      std::uint64_t dataBytes) {
    if (correct(file, type, frames, dataBytes)) return audio_file_error::none;
    return file.error() ? audioFileStatus(file.error()) : audio_file_error::unspecified;
}

} // namespace zephyra
