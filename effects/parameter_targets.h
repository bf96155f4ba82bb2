// ParameterTargets: the parameters of a DSP module as they were last set, crossing to RENDER.
#pragma once

#include "platform/threads/relaxed.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>

namespace zephyra {

/// Count doubles by index, 0 at first. Each is a word of its own: set on any thread, read by RENDER
/// once a block.
template <std::int32_t Count>
class ParameterTargets {
public:
    /// An index outside 0..Count - 1 and a value that is not finite do nothing. Any thread.
    void set(std::int32_t index, double value) ZEPHYRA_NONBLOCKING {
        if (isIndex(index) && std::isfinite(value)) values_[at(index)] = value;
    }
    /// 0 for an index outside 0..Count - 1. Any thread.
    double get(std::int32_t index) const ZEPHYRA_NONBLOCKING {
        return isIndex(index) ? values_[at(index)].load() : 0.0;
    }
    /// All to 0. OFF.
    void clear() noexcept {
        for (auto& value : values_) value = 0.0;
    }

private:
    static bool isIndex(std::int32_t index) ZEPHYRA_NONBLOCKING {
        return index >= 0 && index < Count;
    }
    static std::size_t at(std::int32_t index) ZEPHYRA_NONBLOCKING {
        return static_cast<std::size_t>(index);
    }

    std::array<Relaxed<double>, static_cast<std::size_t>(Count)> values_{};
};

} // namespace zephyra
