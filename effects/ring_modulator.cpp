#include "effects/ring_modulator.h"

#include "effects/dsp_runtime.h"
#include "effects/effect_bodies.h"
#include "effects/parameter_targets.h"

#include <cmath>
#include <new>
#include <numbers>

namespace zephyra::RM {

namespace {

constexpr const char* kParameterNames[kParameterCount] = {"drywet", "freq"};

/// One turn of a cosine and its first point again. All ring modulators read one table, so that it
/// is computed once and stays in the caches whichever of them reads it.
struct CosineTable {
    double points[kTableSize + 1];

    CosineTable() noexcept {
        for (int n = 0; n < kTableSize; ++n)
            points[n] = std::cos(2 * std::numbers::pi * n / kTableSize);
        points[kTableSize] = points[0];
    }
    static const double* shared() noexcept {
        static const CosineTable table;
        return table.points;
    }
};

struct State : CommonState {
    EffectBodies bodies = effectBodiesFor(chosenCpuLevel());
    double phase = 0; // 0..1
    ParameterTargets<kParameterCount> targets;
    double smoothed = 0;
    std::int32_t error = kModuleNoError;
    std::int32_t lastFrames = 0;
    const double* table = CosineTable::shared();
};

} // namespace

CommonState* create(double sampleRate, std::int32_t vectorSize) noexcept {
    auto* state = new (std::nothrow) State;
    if (!state) return nullptr;
    if (!fillStereoState(*state, sampleRate, vectorSize, kParameterNames, kParameterCount)) {
        destroy(state);
        return nullptr;
    }
    reset(state);
    return state;
}

void reset(CommonState* common) noexcept {
    auto* state = static_cast<State*>(common);
    state->phase = 0;
    state->error = kModuleNoError;
    state->smoothed = 0;
    state->targets.clear();
    genlib_reset_complete(state);
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

std::int32_t perform(CommonState* common, const float* inL, const float* inR, float* outL,
                     float* outR, std::int32_t frames) ZEPHYRA_NONBLOCKING {
    auto* state = static_cast<State*>(common);
    state->lastFrames = frames;
    if (state->error != kModuleNoError) return state->error;
    if (!inL || !inR || !outL || !outR) return state->error = kModuleNullChannel;
    const double amount = state->targets.get(kDryWet);
    const double frequency = state->targets.get(kFreq);
    RingBlock block{state->table,
                    state->phase,
                    frequency / state->sampleRate,
                    smoothingStart(state->smoothed, amount),
                    amount,
                    {inL, inR},
                    {outL, outR},
                    frames};
    state->bodies.ring(block);
    state->phase = block.phase;
    state->smoothed = block.smoothed;
    return kModuleNoError;
}

bool isSettled(const CommonState* common) ZEPHYRA_NONBLOCKING {
    const auto* state = static_cast<const State*>(common);
    return isSmoothed(state->smoothed, state->targets.get(kDryWet), kDryWetSmoothing);
}

void pass(CommonState* common, std::int32_t frames) ZEPHYRA_NONBLOCKING {
    auto* state = static_cast<State*>(common);
    const double phase = state->phase + state->targets.get(kFreq) / state->sampleRate * frames;
    state->phase = phase - std::floor(phase);
}

void destroy(CommonState* common) noexcept {
    if (!common) return;
    auto* state = static_cast<State*>(common);
    freeParameterDescriptions(*state);
    delete state;
}

} // namespace zephyra::RM
