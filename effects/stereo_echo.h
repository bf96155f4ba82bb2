// delay_stereo_forward: the stereo echo, two delay lines with smoothed times and feedbacks.
//
// A module's life: create, then setparameter and perform as often as wished, reset or clearBuffer
// while nothing renders, destroy. The output is always the input plus the delayed signal: the first
// repeat sounds at unity gain, and the feedback only sets how much each repeat regenerates.
#pragma once

#include "effects/common_state.h"
#include "platform/threads/realtime.h"

#include <cstdint>

namespace zephyra::delay_stereo_forward {

/// The longest delay, in samples; longer times behave like this one.
inline constexpr double kMaxDelay = 200000;
/// Frames that a line holds; after as many of silence nothing in it is older.
inline constexpr std::int64_t kLineFrames = 262144;
/// One-pole coefficient: the share of the way to its target that a delay time goes per sample.
inline constexpr double kTimeSmoothing = 0.00014247585682363153;
/// The same of a feedback.
inline constexpr double kFeedbackSmoothing = 0.0014247580910282925;

/// The parameters by index; all are 0 after create and reset.
enum Parameter : std::int32_t {
    kTimeL,     ///< "timeL", samples; 1 to kMaxDelay, values outside behave like the nearer end
    kTimeR,     ///< "timeR", likewise
    kFeedbackR, ///< "feedbackR", factor; 0 gives one repeat, from 1 on repeats do not fade
    kFeedbackL, ///< "feedbackL", likewise
    kParameterCount,
};

/// A new echo at sampleRate (Hz; what isModuleSampleRate refuses becomes 44100) with cleared lines.
/// vectorSize is only remembered. Null when there is no memory, which the log then says. MAIN or
/// OFF.
CommonState* create(double sampleRate, std::int32_t vectorSize, Log* log = nullptr) noexcept;

/// Error 0, parameters and their smoothing 0, lines cleared. OFF.
void reset(CommonState* state) noexcept;

/// Clears both lines and nothing else. OFF.
void clearBuffer(CommonState* state) noexcept;

/// What the lines hold reads as silence from here on. They are not touched: nothing is read that
/// was not written since. RENDER.
void forget(CommonState* state) ZEPHYRA_NONBLOCKING;

/// Sets the rate in Hz; one that isModuleSampleRate refuses keeps the old. Times are in samples, so
/// nothing else changes. OFF.
void setSampleRate(CommonState* state, double rate) noexcept;

/// Stores a parameter's target, which later blocks are smoothed towards. An index outside the
/// parameters and a value that is not finite do nothing. Any thread, also while perform runs.
void setparameter(CommonState* state, std::int32_t index, double value) ZEPHYRA_NONBLOCKING;

/// The target of a parameter as last set; 0 for an index outside the parameters. Any thread.
double getparameter(const CommonState* state, std::int32_t index) ZEPHYRA_NONBLOCKING;

/// Processes frames samples of each channel; fewer than 1 are none. outL may be inL and outR may be
/// inR; no other overlap. A null channel pointer records error 101, and a recorded error is
/// returned with the outputs untouched. A value that would enter a line as NaN or infinity enters
/// as 0. RENDER.
std::int32_t perform(CommonState* state, const float* inL, const float* inR, float* outL,
                     float* outR, std::int32_t frames) ZEPHYRA_NONBLOCKING;

/// Whether times and feedbacks have come to where they were set, so that no block moves them.
/// RENDER.
bool isSettled(const CommonState* state) ZEPHYRA_NONBLOCKING;

/// Asks the processor for the memory that count frames of the next block will use, from frame
/// `from` of it on: the lines are far larger than the caches near the processor, and what is asked
/// for while something else is computed need not be waited for. Changes nothing. RENDER.
void fetchAhead(const CommonState* state, std::int32_t from,
                std::int32_t count) ZEPHYRA_NONBLOCKING;

/// Frees everything; null is fine. OFF.
void destroy(CommonState* state) noexcept;

} // namespace zephyra::delay_stereo_forward
