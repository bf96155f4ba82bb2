// commandClock: the clock that the command goes by.
#pragma once

#include "platform/clock.h"

namespace zephyra {

/// Stands still at the whole seconds since 1970 that SOURCE_DATE_EPOCH holds, for banks that can be
/// made again; without that, or with anything else in it, it goes on. MAIN.
Clock commandClock();

} // namespace zephyra
