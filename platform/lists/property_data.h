// PropertyData: the bytes of a property list's data, which its copies share.
#pragma once

#include <cstddef>
#include <initializer_list>
#include <memory>
#include <span>
#include <utility>
#include <vector>

namespace zephyra {

/// Never changed once made: states that carry whole sounds are handed from place to place, and none
/// of them copies the sound. Any thread.
class PropertyData {
public:
    using Bytes = std::vector<std::byte>;

    PropertyData() = default; ///< no bytes
    /// Throws std::bad_alloc, as the others do.
    PropertyData(Bytes bytes)
        : bytes_(bytes.empty() ? nullptr : std::make_shared<const Bytes>(std::move(bytes))) {}
    PropertyData(std::initializer_list<std::byte> bytes) : PropertyData(Bytes(bytes)) {}
    explicit PropertyData(std::span<const std::byte> bytes)
        : PropertyData(Bytes(bytes.begin(), bytes.end())) {}

    const std::byte* data() const noexcept { return bytes_ ? bytes_->data() : nullptr; }
    std::size_t size() const noexcept { return bytes_ ? bytes_->size() : 0; }
    bool empty() const noexcept { return size() == 0; }
    std::byte operator[](std::size_t at) const noexcept { return (*bytes_)[at]; }
    std::span<const std::byte> bytes() const noexcept { return {data(), size()}; }

    bool operator==(const PropertyData& other) const noexcept {
        return bytes_ == other.bytes_ || (bytes_ && other.bytes_ && *bytes_ == *other.bytes_);
    }

private:
    std::shared_ptr<const Bytes> bytes_; // null for none
};

} // namespace zephyra
