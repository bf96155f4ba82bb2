// RM: the ring modulator, one cosine that both channels are multiplied by, blended with the input.
//
// A module's life: create, then setparameter and perform as often as wished, reset while nothing
// renders, destroy.
#pragma once

#include "effects/common_state.h"
#include "platform/threads/realtime.h"

#include <cstdint>

namespace zephyra::RM {

/// Points in one turn of the cosine table.
inline constexpr std::int32_t kTableSize = 16384;
/// One-pole coefficient: the share of the way to its target that the dry/wet amount goes per
/// sample.
inline constexpr double kDryWetSmoothing = 0.0014247580910282925;
/// Between two table points lie 2^18 phases; this maps them to 0..1 with both ends included, so it
/// is 1 / (2^18 - 1), to the digits that the sound was made with.
inline constexpr double kPhaseFraction = 3.81471181759574e-6;

/// The parameters by index; both are 0 after create and reset.
enum Parameter : std::int32_t {
    kDryWet, ///< "drywet", 0 (input) to 1 (product); values outside extrapolate
    kFreq,   ///< "freq", Hz; negative turns backwards
    kParameterCount,
};

/// A new modulator at sampleRate (Hz; what isModuleSampleRate refuses becomes 44100), phase 0.
/// vectorSize is only remembered. Null when there is no memory. MAIN or OFF.
CommonState* create(double sampleRate, std::int32_t vectorSize) noexcept;

/// Error 0, phase 0, parameters and the amount's smoothing 0. OFF.
void reset(CommonState* state) noexcept;

/// Sets the rate in Hz; one that isModuleSampleRate refuses keeps the old. OFF.
void setSampleRate(CommonState* state, double rate) noexcept;

/// Stores a parameter: the amount is smoothed, the frequency holds from the next block on. An index
/// outside the parameters and a value that is not finite do nothing. Any thread, also while perform
/// runs.
void setparameter(CommonState* state, std::int32_t index, double value) ZEPHYRA_NONBLOCKING;

/// A parameter as last set; 0 for an index outside the parameters. Any thread.
double getparameter(const CommonState* state, std::int32_t index) ZEPHYRA_NONBLOCKING;

/// Processes frames samples of each channel; fewer than 1 are none. outL may be inL and outR may be
/// inR; no other overlap. A null channel pointer records error 101, and a recorded error is
/// returned with the outputs untouched; otherwise returns 0. RENDER.
std::int32_t perform(CommonState* state, const float* inL, const float* inR, float* outL,
                     float* outR, std::int32_t frames) ZEPHYRA_NONBLOCKING;

/// Whether the amount has come to where it was set, so that no block moves it. RENDER.
bool isSettled(const CommonState* state) ZEPHYRA_NONBLOCKING;

/// Passes over frames that nobody hears: only the cosine turns, but for the last bits as perform
/// would turn it. RENDER.
void pass(CommonState* state, std::int32_t frames) ZEPHYRA_NONBLOCKING;

/// Frees everything; null is fine. OFF.
void destroy(CommonState* state) noexcept;

} // namespace zephyra::RM
