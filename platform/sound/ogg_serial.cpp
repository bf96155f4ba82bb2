#include "platform/sound/ogg_serial.h"

#include "platform/files/written_file.h"
#include "platform/sound/audio_file_error.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <numeric>
#include <span>

namespace zephyra {

namespace {

// A page: a header, the lengths of its segments, and these.
constexpr std::size_t kSerialAt = 14, kChecksumAt = 22, kSegmentCountAt = 26, kHeaderBytes = 27;
constexpr std::size_t kMostPageBytes = kHeaderBytes + 255 + 255 * 255;
constexpr std::uint32_t kSerial = 1;

constexpr std::array<std::uint32_t, 256> checksumTable() {
    constexpr std::uint32_t kPolynomial = 0x04c11db7;
    std::array<std::uint32_t, 256> table{};
    for (std::uint32_t i = 0; i < table.size(); ++i) {
        table[i] = i << 24;
        for (int bit = 0; bit < 8; ++bit)
            table[i] = table[i] << 1 ^ (table[i] & 0x80000000u ? kPolynomial : 0);
    }
    return table;
}

std::uint32_t checksum(std::span<const std::byte> page) {
    static constexpr std::array kTable = checksumTable();
    std::uint32_t sum = 0;
    for (const std::byte byte : page)
        sum = sum << 8 ^ kTable[sum >> 24 ^ std::to_integer<std::uint32_t>(byte)];
    return sum;
}

void putLittleEndian(std::span<std::byte> field, std::uint32_t value) {
    for (std::byte& byte : field) {
        byte = static_cast<std::byte>(value);
        value >>= 8;
    }
}

class Page {
public:
    /// Takes the page at the file's position; false when there is no whole one.
    bool read(WrittenFile& file) {
        size_ = kHeaderBytes;
        if (file.read(part(0, size_)) < size_ || std::memcmp(bytes_.data(), "OggS", 4) != 0)
            return false;
        const auto segments = std::to_integer<std::size_t>(bytes_[kSegmentCountAt]);
        if (file.read(part(size_, segments)) < segments) return false;
        const std::size_t body =
            std::accumulate(bytes_.begin() + kHeaderBytes,
                            bytes_.begin() + kHeaderBytes + static_cast<std::ptrdiff_t>(segments),
                            std::size_t{0}, [](std::size_t sum, std::byte length) {
                                return sum + std::to_integer<std::size_t>(length);
                            });
        size_ += segments + body;
        return file.read(part(size_ - body, body)) == body;
    }
    void setSerial(std::uint32_t serial) {
        putLittleEndian(part(kSerialAt, 4), serial);
        putLittleEndian(part(kChecksumAt, 4), 0);
        putLittleEndian(part(kChecksumAt, 4), checksum(part(0, size_)));
    }
    std::span<const std::byte> header() const { return std::span(bytes_).first(kHeaderBytes); }
    std::size_t size() const { return size_; }

private:
    std::span<std::byte> part(std::size_t from, std::size_t count) {
        return std::span(bytes_).subspan(from, count);
    }

    std::array<std::byte, kMostPageBytes> bytes_;
    std::size_t size_ = 0;
};

} // namespace

OSStatus settleOggSerial(WrittenFile& file) {
    Page page;
    for (std::uint64_t at = 0; at < file.size(); at += page.size()) {
        file.seek(at);
        bool done = page.read(file);
        if (done) page.setSerial(kSerial);
        file.seek(at);
        done = done && file.write(page.header());
        if (!done)
            return file.error() ? audioFileStatus(file.error()) : audio_file_error::unspecified;
    }
    return audio_file_error::none;
}

} // namespace zephyra
