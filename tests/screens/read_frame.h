// readFrameOf: a frame's reading in tests, which want it now.
#pragma once

#include "screens/model/screen_source.h"

#include <thread>

namespace zephyra {

/// Until no other thread is MAIN; a window would show the moment before.
inline void readFrameOf(ScreenSource& source, const FrameTime& time = {}) {
    while (!source.readFrame(time)) std::this_thread::yield();
}

} // namespace zephyra
