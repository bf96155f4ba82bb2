#include "platform/files/content_hash.h"

#include "platform/text/one_line.h"

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <memory>
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

} // namespace

std::string contentHash(std::span<const std::byte> bytes) {
    return hexadecimal(XXH3_128bits(bytes.data(), bytes.size()));
}

Result<std::string> contentHashOfFile(const std::filesystem::path& path,
                                      const std::function<bool()>& wanted) {
    const auto failure = [&](const char* reason) {
        return Failure{onOneLine(path.string()) + " cannot be read: " + reason};
    };
    std::error_code ignored;
    // A device or pipe is not even opened: that may wait for ever.
    if (!std::filesystem::is_regular_file(path, ignored))
        return failure("an ordinary file is needed");
    std::ifstream file(path, std::ios::binary);
    const std::unique_ptr<XXH3_state_t, StateFreer> state(XXH3_createState());
    if (!state || XXH3_128bits_reset(state.get()) == XXH_ERROR)
        return failure("there is not enough memory");
    // Not until the end is met: the system's own files (of size 0) may wait for it for ever.
    std::uint64_t left = std::filesystem::file_size(path, ignored);
    std::vector<char> piece(kPiece);
    while (file && !ignored && left > 0) {
        if (wanted && !wanted()) return failure("the reading was cancelled");
        file.read(piece.data(),
                  static_cast<std::streamsize>(std::min<std::uint64_t>(left, kPiece)));
        XXH3_128bits_update(state.get(), piece.data(), static_cast<std::size_t>(file.gcount()));
        left -= static_cast<std::uint64_t>(file.gcount());
    }
    if (ignored || (!file && !file.eof())) return failure("it must be a file that you may read");
    return hexadecimal(XXH3_128bits_digest(state.get()));
}

} // namespace zephyra
