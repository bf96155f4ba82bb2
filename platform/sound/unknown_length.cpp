#include "platform/sound/unknown_length.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <string_view>
#include <system_error>

namespace zephyra {

namespace {

enum class Order { big, little };

struct Layout {
    std::uint64_t firstChunk;
    std::size_t lengthBytes; ///< of a chunk's length, behind its four letters
    Order order;
    std::uint64_t padding; ///< chunks begin at its multiples
};

constexpr std::uint64_t kNameBytes = 4;
constexpr std::uint64_t kMost32 = std::numeric_limits<std::uint32_t>::max();
constexpr std::uint64_t kAuLengthAt = 8;

class Header {
public:
    explicit Header(const FileBytes& file) : file_(file) {}

    std::uint64_t size() const { return file_.size(); }

    bool says(std::uint64_t at, std::string_view name) const {
        std::array<char, kNameBytes> found{};
        std::error_code error;
        return file_.readAt(at, std::as_writable_bytes(std::span(found)), error) == found.size() &&
               std::string_view(found.data(), found.size()) == name;
    }

    /// None behind the end.
    std::optional<std::uint64_t> number(std::uint64_t at, std::size_t bytes, Order order) const {
        std::array<std::byte, 8> found{};
        std::error_code error;
        const std::span read = std::span(found).first(bytes);
        if (file_.readAt(at, read, error) < bytes) return std::nullopt;
        if (order == Order::little) std::ranges::reverse(read);
        std::uint64_t number = 0;
        for (const std::byte byte : read) number = number << 8 | std::to_integer<unsigned>(byte);
        return number;
    }

    /// Where the chunk after the one at `at` begins; none where there is no whole one.
    std::optional<std::uint64_t> next(std::uint64_t at, const Layout& layout) const {
        const std::uint64_t content = at + kNameBytes + layout.lengthBytes;
        const auto length = number(at + kNameBytes, layout.lengthBytes, layout.order);
        if (!length || *length > size() - content) return std::nullopt;
        return content + (*length + layout.padding - 1) / layout.padding * layout.padding;
    }

    std::optional<std::uint64_t> find(std::string_view name, const Layout& layout) const {
        std::optional<std::uint64_t> at = layout.firstChunk;
        while (at && !says(*at, name)) at = next(*at, layout);
        return at;
    }

    /// Whether nothing but whole chunks stands from there to the end.
    bool isAllChunks(std::uint64_t at, const Layout& layout) const {
        std::optional<std::uint64_t> chunk = at;
        while (chunk && *chunk < size()) chunk = next(*chunk, layout);
        return chunk.has_value();
    }

private:
    const FileBytes& file_;
};

HeaderPatch patch(std::uint64_t at, std::size_t bytes, Order order, std::uint64_t number) {
    HeaderPatch patch{.at = at, .count = bytes};
    for (std::size_t i = bytes; i-- > 0; number >>= 8) patch.bytes[i] = std::byte(number & 0xff);
    if (order == Order::little) std::reverse(patch.bytes.begin(), patch.bytes.begin() + bytes);
    return patch;
}

/// In a file of the 64-bit kind the length stands in a chunk of its own.
HeaderPatch waveData(const Header& header) {
    const Order order = header.says(0, "RIFX") ? Order::big : Order::little;
    const Layout layout = {.firstChunk = 12, .lengthBytes = 4, .order = order, .padding = 2};
    const auto data = header.find("data", layout);
    if (!data) return {};
    const std::uint64_t begin = *data + 8, rest = header.size() - std::min(begin, header.size());
    const auto wide = header.says(0, "RF64") ? header.find("ds64", layout) : std::nullopt;
    const std::uint64_t lengthAt = wide ? *wide + 16 : *data + kNameBytes;
    const std::size_t bytes = wide ? 8 : 4;
    if (header.number(lengthAt, bytes, order) != 0 || header.isAllChunks(begin, layout)) return {};
    return patch(lengthAt, bytes, order, wide ? rest : std::min(rest, kMost32));
}

HeaderPatch cafData(const Header& header) {
    const Layout layout = {.firstChunk = 8, .lengthBytes = 8, .order = Order::big, .padding = 1};
    const auto data = header.find("data", layout);
    if (!data) return {};
    const std::uint64_t begin = *data + 12, rest = header.size() - std::min(begin, header.size());
    const auto length = header.number(*data + kNameBytes, 8, Order::big);
    const bool isKnown =
        length && *length <= rest && (*length > 0 || header.isAllChunks(begin, layout));
    return isKnown ? HeaderPatch() : patch(*data + kNameBytes, 8, Order::big, rest);
}

HeaderPatch auData(const Header& header) {
    const auto begin = header.number(4, 4, Order::big);
    const auto length = header.number(kAuLengthAt, 4, Order::big);
    if (!begin || !length || *begin > header.size()) return {};
    const std::uint64_t rest = header.size() - *begin;
    if (*length > 0 && *length <= rest) return {};
    return patch(kAuLengthAt, 4, Order::big, std::min(rest, kMost32));
}

} // namespace

void HeaderPatch::applyTo(std::uint64_t offset, std::span<std::byte> read) const noexcept {
    for (std::size_t i = 0; i < count; ++i)
        if (at + i >= offset && at + i - offset < read.size()) read[at + i - offset] = bytes[i];
}

HeaderPatch lengthPatch(const FileBytes& file, SoundFileKind kind) {
    const Header header(file);
    if (kind == SoundFileKind::wave) return waveData(header);
    if (kind == SoundFileKind::caf) return cafData(header);
    return kind == SoundFileKind::au ? auData(header) : HeaderPatch();
}

} // namespace zephyra
