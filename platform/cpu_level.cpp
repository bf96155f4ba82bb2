#include "platform/cpu_level.h"

#include <cstdlib>
#include <string>

namespace zephyra {

namespace {

struct Choice {
    CpuLevel level;
    std::string warning;
};

Choice chooseLevel() {
    const CpuLevel supported = supportedCpuLevel();
    const char* forced = std::getenv("ZEPHYRA_CPU_LEVEL");
    if (!forced) return {supported, {}};
    for (CpuLevel level : {CpuLevel::baseline, CpuLevel::v3, CpuLevel::v4})
        if (std::string(forced) == cpuLevelName(level) && level <= supported) return {level, {}};
    return {supported, std::string("Warning, ZEPHYRA_CPU_LEVEL=") + forced +
                           " is ignored: this processor offers baseline up to " +
                           cpuLevelName(supported)};
}

const Choice& choice() {
    static const Choice made = chooseLevel();
    return made;
}

} // namespace

CpuLevel supportedCpuLevel() noexcept {
#if defined(__x86_64__)
    __builtin_cpu_init();
    // The built-in test also asks the operating system whether it saves the wide registers.
    if (!__builtin_cpu_supports("avx2") || !__builtin_cpu_supports("fma") ||
        !__builtin_cpu_supports("bmi2"))
        return CpuLevel::baseline;
    if (__builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
        __builtin_cpu_supports("avx512cd") && __builtin_cpu_supports("avx512dq") &&
        __builtin_cpu_supports("avx512vl"))
        return CpuLevel::v4;
    return CpuLevel::v3;
#else
    return CpuLevel::baseline;
#endif
}

CpuLevel chosenCpuLevel() noexcept {
    return choice().level;
}

const std::string& cpuLevelWarning() noexcept {
    return choice().warning;
}

const char* cpuLevelName(CpuLevel level) noexcept {
    switch (level) {
    case CpuLevel::v4:
        return "v4";
    case CpuLevel::v3:
        return "v3";
    case CpuLevel::baseline:
        break;
    }
    return "baseline";
}

} // namespace zephyra
