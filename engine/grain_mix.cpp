#include "engine/grain_mix.h"

#include "engine/grain_mix_levels.h"

namespace zephyra {

GrainMixer grainMixer(CpuLevel level) noexcept {
#if defined(__x86_64__)
    switch (level) {
    case CpuLevel::v4:
        return mixGrainV4;
    case CpuLevel::v3:
        return mixGrainV3;
    case CpuLevel::baseline:
        break;
    }
#else
    static_cast<void>(level);
#endif
    return mixGrainBaseline;
}

} // namespace zephyra
