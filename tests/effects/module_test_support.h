// Module: owns a DSP module in a test and runs signals through it.
#pragma once

#include "effects/common_state.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace zephyra {

using Module = std::unique_ptr<CommonState, void (*)(CommonState*) noexcept>;

struct StereoSignal {
    explicit StereoSignal(std::size_t frames, float value = 0)
        : left(frames, value), right(frames, value) {}
    std::vector<float> left, right;
};

/// Runs perform over the whole signal, in place; answers its code.
template <typename Perform>
std::int32_t performInPlace(Perform perform, const Module& module, StereoSignal& signal) {
    return perform(module.get(), signal.left.data(), signal.right.data(), signal.left.data(),
                   signal.right.data(), static_cast<std::int32_t>(signal.left.size()));
}

} // namespace zephyra
