// How UnitHost leaves out what nobody would hear.

#include "hosting/unit_host.h"
#include "platform/silence.h"

#include <algorithm>

namespace zephyra {

using audio_unit_status::noError;

OSStatus UnitHost::renderOrRest(const HostCycle& cycle,
                                const AURenderEvent* events) ZEPHYRA_NONBLOCKING {
    if (events || !rests(cycle)) return render(cycle, events);
    const OSStatus status = callUnit({}, nullptr);
    if (status != noError) return status;
    for (float* const output : cycle.output) std::fill_n(output, cycle.frames, 0.0f);
    unit_.pass(cycle.frames);
    time.goOn(cycle.frames);
    return noError;
}

bool UnitHost::rests(const HostCycle& cycle) const ZEPHYRA_NONBLOCKING {
    if (!running_ || cycle.frames == 0 || !unit_.rests()) return false;
    return std::ranges::all_of(cycle.input, [&cycle](const float* input) {
        return !input || isSilence(input, cycle.frames);
    });
}

} // namespace zephyra
