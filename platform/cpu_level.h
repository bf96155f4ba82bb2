// CpuLevel: which instruction-set level the hot loops run at.
#pragma once

#include <string>

namespace zephyra {

/// The x86-64 levels that hot loops are built for; other processors run the baseline.
enum class CpuLevel {
    baseline, ///< what every build target has
    v3,       ///< AVX2 and FMA
    v4,       ///< AVX-512 F, BW, CD, DQ, VL
};

/// The highest level that this processor and operating system offer. Any thread.
CpuLevel supportedCpuLevel() noexcept;

/// The level that hot loops are to use: the supported one, or a lower one forced by the environment
/// variable ZEPHYRA_CPU_LEVEL (baseline, v3 or v4; anything else, and a level that the processor
/// lacks, is ignored). Decided once a process, at the first call. MAIN or OFF.
CpuLevel chosenCpuLevel() noexcept;

/// What is wrong with the variable, as a line for the log; empty when nothing is. MAIN or OFF.
const std::string& cpuLevelWarning() noexcept;

/// "baseline", "v3" or "v4".
const char* cpuLevelName(CpuLevel level) noexcept;

} // namespace zephyra
