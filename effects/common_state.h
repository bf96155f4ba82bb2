// CommonState: the part that the state records of all DSP modules begin with.
#pragma once

#include "platform/threads/realtime.h"

#include <cmath>
#include <cstdint>

namespace zephyra {

class Log;

/// One parameter of a module, as create describes it. The defaults here are what both modules use.
struct ParameterDescription {
    double defaultValue = 0; ///< the parameter's value after creation
    const void* defaultReference = nullptr;
    bool hasInputRange = false;
    double inputMin = 0;
    double inputMax = 1;
    bool hasRange = true; ///< nominal only: setparameter takes values outside it
    double outputMin = 0;
    double outputMax = 1;
    const char* name = "";
    const char* units = "";
    std::int32_t type = 0;
    double exponent = 1.0;
};

/// What every module tells about itself. Written by create and setSampleRate (OFF), else read-only.
struct CommonState {
    double sampleRate = 0;       ///< Hz
    std::int32_t vectorSize = 0; ///< frames, as given to create; a block may have any length
    std::int32_t inputCount = 0;
    std::int32_t outputCount = 0;
    const char* const* inputNames = nullptr;  ///< inputCount texts
    const char* const* outputNames = nullptr; ///< outputCount texts
    std::int32_t parameterCount = 0;
    ParameterDescription* parameters = nullptr; ///< parameterCount, from sysmem_newptr
    Log* log = nullptr;                         ///< hears what goes wrong; null: standard error
};

/// What perform answers and keeps answering until reset.
enum ModuleError : std::int32_t {
    kModuleNoError = 0,
    kModuleNullChannel = 101, ///< one of the four channel pointers was null
};

/// The rate of a module that was created with one that cannot be (not finite, or below
/// kModuleMinSampleRate), in Hz.
inline constexpr double kModuleDefaultSampleRate = 44100;
/// Hz. From here on a frequency divided by the rate is finite whenever the frequency is.
inline constexpr double kModuleMinSampleRate = 1;

/// Whether a module can run at rate: finite and at least kModuleMinSampleRate. Any thread.
bool isModuleSampleRate(double rate) noexcept;

/// Where smoothing towards target starts that stands at smoothed: there, or at 0 when the two are
/// so far apart that their difference would be infinite. Any thread.
inline double smoothingStart(double smoothed, double target) ZEPHYRA_NONBLOCKING {
    return std::isfinite(target - smoothed) ? smoothed : 0;
}

/// Whether the next step of a smoothing, the share coefficient of the way to its target, is too
/// small to change the value; it then is for good. Any thread.
inline bool isSmoothed(double value, double target, double coefficient) ZEPHYRA_NONBLOCKING {
    return value + coefficient * (target - value) == value;
}

/// Fills the record of a stereo module ("in1", "in2", "out1", "out2") with one description per
/// name; false when there is no memory for them. vectorSize below 1 counts as 1. MAIN or OFF.
bool fillStereoState(CommonState& state, double sampleRate, std::int32_t vectorSize,
                     const char* const* parameterNames, std::int32_t parameterCount) noexcept;

/// Frees the descriptions. MAIN or OFF.
void freeParameterDescriptions(CommonState& state) noexcept;

} // namespace zephyra
