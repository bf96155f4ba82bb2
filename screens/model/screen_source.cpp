#include "screens/model/screen_source.h"

namespace zephyra {

bool ScreenSource::readFrame(const FrameTime& time) {
    HostedInstance& system = plugin_.system();
    const RunLoop::TryScope scope(system.instance.runLoop);
    if (!scope) return false;
    for (ScreenPart* const part : parts_) part->read(system.view, time);
    return true;
}

} // namespace zephyra
