// ByteReader: arbitrary bytes as numbers.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <type_traits>

namespace zephyra {

/// Takes numbers from the front, in this machine's byte order. Past the end everything is 0.
class ByteReader {
public:
    explicit ByteReader(std::span<const std::byte> bytes) : bytes_(bytes) {}

    bool empty() const { return bytes_.empty(); }

    template <typename Number>
    Number take() {
        static_assert(std::is_arithmetic_v<Number> && !std::is_same_v<Number, bool>);
        Number number{};
        const std::size_t count = std::min(sizeof number, bytes_.size());
        std::memcpy(&number, bytes_.data(), count);
        bytes_ = bytes_.subspan(count);
        return number;
    }
    std::uint8_t byte() { return take<std::uint8_t>(); }
    /// 0 to count - 1.
    std::size_t below(std::size_t count) { return byte() % count; }

private:
    std::span<const std::byte> bytes_;
};

} // namespace zephyra
