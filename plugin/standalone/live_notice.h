// liveNotice: what a player of the standalone program is told about LIVE.
#pragma once

#include <string>

namespace zephyra {

/// How things stand for LIVE.
struct LiveSigns {
    bool isLive = false;
    bool hasDevice = false;
    bool hasInput = false; ///< something can come in
    bool wasTold = false;  ///< the player has confirmed to know of feedback, ever
};

struct LiveNotice {
    std::string line;  ///< beside the button; empty for nothing
    bool asks = false; ///< to be confirmed, once in a player's life; the sound goes on meanwhile
};

/// Any thread.
LiveNotice liveNotice(const LiveSigns& signs);

} // namespace zephyra
