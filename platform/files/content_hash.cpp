#include "platform/files/content_hash.h"

#include "platform/text/odd_bytes.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <variant>
#include <vector>
#include <xxhash.h>

namespace zephyra {

namespace {

constexpr std::size_t kPiece = std::size_t{1} << 18; // bytes read at a time

struct StateFreer {
    void operator()(XXH3_state_t* state) const noexcept { XXH3_freeState(state); }
};

std::string hexadecimal(XXH128_hash_t hash) {
    constexpr char digits[] = "0123456789abcdef";
    XXH128_canonical_t bytes;
    XXH128_canonicalFromHash(&bytes, hash);
    std::string text;
    for (const unsigned char byte : bytes.digest) {
        text += digits[byte >> 4];
        text += digits[byte & 0xf];
    }
    return text;
}

constexpr const char* kMayRead = "it must be a file that you may read";

Failure cannotBeRead(const std::filesystem::path& path, const char* reason) {
    return {shownFile(path) + " cannot be read: " + reason};
}

} // namespace

std::string contentHash(std::span<const std::byte> bytes) {
    return hexadecimal(XXH3_128bits(bytes.data(), bytes.size()));
}

Result<FileBytes> openToHash(const std::filesystem::path& path) {
    auto opened = FileBytes::open(path);
    if (const auto* const problem = std::get_if<NotOpened>(&opened))
        return cannotBeRead(path, problem->why == NotOpened::Why::refused
                                      ? kMayRead
                                      : "an ordinary file is needed");
    return std::get<FileBytes>(std::move(opened));
}

Result<std::string> contentHash(const FileBytes& file, const std::function<bool()>& wanted) {
    const auto failure = [&](const char* reason) { return cannotBeRead(file.name(), reason); };
    if (wanted && !wanted()) return failure("the reading was cancelled");
    if (file.isLoaded()) return contentHash(file.loaded());
    const std::unique_ptr<XXH3_state_t, StateFreer> state(XXH3_createState());
    if (!state || XXH3_128bits_reset(state.get()) == XXH_ERROR)
        return failure("there is not enough memory");
    // Not until the end is met: the system's own files (of size 0) may wait for it for ever.
    std::vector<std::byte> piece(kPiece);
    for (std::uint64_t at = 0; at < file.size(); at += kPiece) {
        if (wanted && !wanted()) return failure("the reading was cancelled");
        const auto wantedBytes = std::min<std::uint64_t>(file.size() - at, kPiece);
        std::error_code error;
        const std::size_t got =
            file.readAt(at, std::span(piece).first(static_cast<std::size_t>(wantedBytes)), error);
        if (error) return failure(kMayRead);
        XXH3_128bits_update(state.get(), piece.data(), got);
        if (got < wantedBytes) break; // somebody has cut it meanwhile
    }
    return hexadecimal(XXH3_128bits_digest(state.get()));
}

} // namespace zephyra
