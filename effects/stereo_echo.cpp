#include "effects/stereo_echo.h"

#include "effects/delay_line.h"
#include "effects/dsp_runtime.h"
#include "effects/effect_bodies.h"

#include <atomic>
#include <cmath>
#include <new>

namespace zephyra::delay_stereo_forward {

namespace {

constexpr const char* kParameterNames[kParameterCount] = {"timeL", "timeR", "feedbackR",
                                                          "feedbackL"};

/// The parameters in the order of EchoBlock: times, then feedbacks, left first.
constexpr Parameter kBlockOrder[kParameterCount] = {kTimeL, kTimeR, kFeedbackL, kFeedbackR};

struct State : CommonState {
    DelayLine lineL;
    DelayLine lineR;
    EffectBodies bodies = effectBodiesFor(chosenCpuLevel());
    std::atomic<double> target[kParameterCount] = {}; // by index
    double smoothed[kParameterCount] = {};            // in block order
    std::int32_t error = kModuleNoError;
    std::int32_t lastFrames = 0;
};
static_assert(std::atomic<double>::is_always_lock_free);

} // namespace

CommonState* create(double sampleRate, std::int32_t vectorSize) noexcept {
    auto* state = new (std::nothrow) State;
    if (!state) return nullptr;
    if (!fillStereoState(*state, sampleRate, vectorSize, kParameterNames, kParameterCount)) {
        destroy(state);
        return nullptr;
    }
    setUpDelayLine(state->lineL, "m_delay_5", static_cast<std::int64_t>(kMaxDelay));
    setUpDelayLine(state->lineR, "m_delay_6", static_cast<std::int64_t>(kMaxDelay));
    if (state->lineL.size != kEchoLineSize || !state->lineL.usable() || !state->lineR.usable()) {
        destroy(state);
        return nullptr;
    }
    return state;
}

void reset(CommonState* common) noexcept {
    auto* state = static_cast<State*>(common);
    state->error = kModuleNoError;
    for (int n = 0; n < kParameterCount; ++n) {
        state->target[n] = 0;
        state->smoothed[n] = 0;
    }
    clearBuffer(state);
    genlib_reset_complete(state);
}

void clearBuffer(CommonState* common) noexcept {
    auto* state = static_cast<State*>(common);
    clearDelayLine(state->lineL);
    clearDelayLine(state->lineR);
}

void setSampleRate(CommonState* state, double rate) noexcept {
    if (isModuleSampleRate(rate)) state->sampleRate = rate;
}

void setparameter(CommonState* state, std::int32_t index, double value) ZEPHYRA_NONBLOCKING {
    if (index < 0 || index >= kParameterCount || !std::isfinite(value)) return;
    static_cast<State*>(state)->target[index].store(value, std::memory_order_relaxed);
}

double getparameter(const CommonState* state, std::int32_t index) ZEPHYRA_NONBLOCKING {
    if (index < 0 || index >= kParameterCount) return 0;
    return static_cast<const State*>(state)->target[index].load(std::memory_order_relaxed);
}

std::int32_t perform(CommonState* common, const float* inL, const float* inR, float* outL,
                     float* outR, std::int32_t frames) ZEPHYRA_NONBLOCKING {
    auto* state = static_cast<State*>(common);
    state->lastFrames = frames;
    if (state->error != kModuleNoError) return state->error;
    if (!inL || !inR || !outL || !outR) return state->error = kModuleNullChannel;
    EchoBlock block{{state->lineL.memory, state->lineR.memory},
                    {state->lineL.writeIndex, state->lineR.writeIndex},
                    {},
                    {},
                    {inL, inR},
                    {outL, outR},
                    frames};
    for (int n = 0; n < kParameterCount; ++n) {
        block.target[n] = state->target[kBlockOrder[n]].load(std::memory_order_relaxed);
        block.smoothed[n] = glideStart(state->smoothed[n], block.target[n]);
    }
    state->bodies.echo(block);
    for (int n = 0; n < kParameterCount; ++n) state->smoothed[n] = block.smoothed[n];
    state->lineL.writeIndex = block.writeIndex[0];
    state->lineR.writeIndex = block.writeIndex[1];
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
