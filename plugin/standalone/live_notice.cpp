#include "plugin/standalone/live_notice.h"

namespace zephyra {

LiveNotice liveNotice(const LiveSigns& signs) {
    if (!signs.isLive || !signs.hasDevice) return {};
    if (!signs.hasInput) return {"LIVE hears nothing: no input is connected", false};
    return {"LIVE hears the input: a microphone near loudspeakers feeds back, headphones do not",
            !signs.wasTold};
}

} // namespace zephyra
