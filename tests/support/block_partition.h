// randomPartition: a signal's length as a sequence of blocks, the same for the same seed.
#pragma once

#include <algorithm>
#include <cstdint>
#include <random>
#include <vector>

namespace zephyra {

/// Block lengths of 1 to longest that add up to frames: many short ones, some long.
inline std::vector<std::int32_t> randomPartition(std::int32_t frames, std::int32_t longest,
                                                 std::uint32_t seed) {
    std::mt19937 random(seed);
    std::vector<std::int32_t> blocks;
    while (frames > 0) {
        const auto limit =
            static_cast<std::uint32_t>(random() % 2 ? longest : std::min(longest, 70));
        const auto block = std::min<std::int32_t>(frames, 1 + static_cast<int>(random() % limit));
        blocks.push_back(block);
        frames -= block;
    }
    return blocks;
}

} // namespace zephyra
