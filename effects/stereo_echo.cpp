#include "effects/stereo_echo.h"

#include "effects/delay_line.h"
#include "effects/dsp_runtime.h"
#include "effects/effect_bodies.h"
#include "effects/parameter_targets.h"

#include <algorithm>
#include <cmath>
#include <new>

namespace zephyra::delay_stereo_forward {

namespace {

static_assert(kLineFrames == kEchoLineSize);

constexpr const char* kParameterNames[kParameterCount] = {"timeL", "timeR", "feedbackR",
                                                          "feedbackL"};

/// The parameters in the order of EchoBlock: times, then feedbacks, left first.
constexpr Parameter kBlockOrder[kParameterCount] = {kTimeL, kTimeR, kFeedbackL, kFeedbackR};

struct State : CommonState {
    DelayLine lineL;
    DelayLine lineR;
    EffectBodies bodies = effectBodiesFor(chosenCpuLevel());
    ParameterTargets<kParameterCount> targets;
    double smoothed[kParameterCount] = {}; // in block order
    std::int32_t error = kModuleNoError;
    std::int32_t lastFrames = 0;
    std::int64_t written = kEchoLineSize; // frames of the lines that are to be heard
};

} // namespace

CommonState* create(double sampleRate, std::int32_t vectorSize, Log* log) noexcept {
    auto* state = new (std::nothrow) State;
    if (!state) return nullptr;
    state->log = log;
    if (!fillStereoState(*state, sampleRate, vectorSize, kParameterNames, kParameterCount)) {
        destroy(state);
        return nullptr;
    }
    setUpDelayLine(state->lineL, "m_delay_5", static_cast<std::int64_t>(kMaxDelay), log);
    setUpDelayLine(state->lineR, "m_delay_6", static_cast<std::int64_t>(kMaxDelay), log);
    if (state->lineL.size != kEchoLineSize || !state->lineL.usable() || !state->lineR.usable()) {
        destroy(state);
        return nullptr;
    }
    return state;
}

void reset(CommonState* common) noexcept {
    auto* state = static_cast<State*>(common);
    state->error = kModuleNoError;
    state->targets.clear();
    for (double& value : state->smoothed) value = 0;
    clearBuffer(state);
    genlib_reset_complete(state);
}

void clearBuffer(CommonState* common) noexcept {
    auto* state = static_cast<State*>(common);
    clearDelayLine(state->lineL);
    clearDelayLine(state->lineR);
    state->written = kEchoLineSize;
}

void forget(CommonState* state) ZEPHYRA_NONBLOCKING {
    static_cast<State*>(state)->written = 0;
}

void setSampleRate(CommonState* state, double rate) noexcept {
    if (isModuleSampleRate(rate)) state->sampleRate = rate;
}

void setparameter(CommonState* state, std::int32_t index, double value) ZEPHYRA_NONBLOCKING {
    static_cast<State*>(state)->targets.set(index, value);
}

double getparameter(const CommonState* state, std::int32_t index) ZEPHYRA_NONBLOCKING {
    return static_cast<const State*>(state)->targets.get(index);
}

void fetchAhead(const CommonState* common, std::int32_t from,
                std::int32_t count) ZEPHYRA_NONBLOCKING {
    constexpr std::int64_t kCacheLine = 64 / sizeof(double);
    const auto* state = static_cast<const State*>(common);
    const DelayLine* const lines[] = {&state->lineL, &state->lineR};
    const double* at[4];
    std::int64_t atMost = count; // what lies behind a wrap comes when it is needed
    for (int side = 0; side < 2; ++side) {
        const DelayLine& line = *lines[side];
        const auto delay =
            static_cast<std::int64_t>(std::clamp(state->smoothed[side], 1.0, kMaxDelay));
        const std::int64_t write = (line.writeIndex + from) & line.mask;
        const std::int64_t read = (write - delay) & line.mask;
        at[2 * side] = line.memory + write;
        at[2 * side + 1] = line.memory + read;
        atMost = std::min(atMost, line.size - std::max(write, read));
    }
    for (std::int64_t n = 0; n < atMost; n += kCacheLine)
        for (const double* each : at) __builtin_prefetch(each + n);
}

bool isSettled(const CommonState* common) ZEPHYRA_NONBLOCKING {
    const auto* state = static_cast<const State*>(common);
    for (int n = 0; n < kParameterCount; ++n) {
        const bool isTime = kBlockOrder[n] == kTimeL || kBlockOrder[n] == kTimeR;
        if (!isSmoothed(state->smoothed[n], state->targets.get(kBlockOrder[n]),
                        isTime ? kTimeSmoothing : kFeedbackSmoothing))
            return false;
    }
    return true;
}

std::int32_t perform(CommonState* common, const float* inL, const float* inR, float* outL,
                     float* outR, std::int32_t frames) ZEPHYRA_NONBLOCKING {
    auto* state = static_cast<State*>(common);
    state->lastFrames = frames;
    if (state->error != kModuleNoError) return state->error;
    if (!inL || !inR || !outL || !outR) return state->error = kModuleNullChannel;
    EchoBlock block; // each member is set here, none twice: in short blocks that shows
    block.line[0] = state->lineL.memory;
    block.line[1] = state->lineR.memory;
    block.writeIndex[0] = state->lineL.writeIndex;
    block.writeIndex[1] = state->lineR.writeIndex;
    for (int n = 0; n < kParameterCount; ++n) {
        block.target[n] = state->targets.get(kBlockOrder[n]);
        block.smoothed[n] = smoothingStart(state->smoothed[n], block.target[n]);
    }
    block.in[0] = inL;
    block.in[1] = inR;
    block.out[0] = outL;
    block.out[1] = outR;
    block.frames = frames;
    block.written = state->written;
    state->bodies.echo(block);
    for (int n = 0; n < kParameterCount; ++n) state->smoothed[n] = block.smoothed[n];
    state->lineL.writeIndex = block.writeIndex[0];
    state->lineR.writeIndex = block.writeIndex[1];
    state->written = block.written;
    return kModuleNoError;
}

void destroy(CommonState* common) noexcept {
    if (!common) return;
    auto* state = static_cast<State*>(common);
    freeParameterDescriptions(*state);
    releaseDelayLine(state->lineL);
    releaseDelayLine(state->lineR);
    delete state;
}

} // namespace zephyra::delay_stereo_forward
