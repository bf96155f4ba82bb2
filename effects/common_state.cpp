#include "effects/common_state.h"

#include "effects/dsp_runtime.h"

#include <algorithm>
#include <cmath>
#include <new>

namespace zephyra {

namespace {

constexpr const char* kInputNames[] = {"in1", "in2"};
constexpr const char* kOutputNames[] = {"out1", "out2"};

} // namespace

bool isModuleSampleRate(double rate) noexcept {
    return std::isfinite(rate) && rate >= kModuleMinSampleRate;
}

bool fillStereoState(CommonState& state, double sampleRate, std::int32_t vectorSize,
                     const char* const* parameterNames, std::int32_t parameterCount) noexcept {
    const auto count = static_cast<std::size_t>(parameterCount);
    void* memory = sysmem_newptr(count * sizeof(ParameterDescription));
    if (!memory) return false;
    state.parameters = static_cast<ParameterDescription*>(memory);
    for (std::size_t n = 0; n < count; ++n) {
        new (&state.parameters[n]) ParameterDescription;
        state.parameters[n].name = parameterNames[n];
    }
    state.parameterCount = parameterCount;
    state.sampleRate = isModuleSampleRate(sampleRate) ? sampleRate : kModuleDefaultSampleRate;
    state.vectorSize = std::max(vectorSize, 1);
    state.inputCount = 2;
    state.outputCount = 2;
    state.inputNames = kInputNames;
    state.outputNames = kOutputNames;
    return true;
}

void freeParameterDescriptions(CommonState& state) noexcept {
    sysmem_freeptr(state.parameters);
    state.parameters = nullptr;
    state.parameterCount = 0;
}

} // namespace zephyra
