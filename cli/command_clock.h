// useClockOfEnvironment: a clock that stands still, for banks that can be made again.
#pragma once

namespace zephyra {

/// From now on the platform's clock shows the whole seconds since 1970 that SOURCE_DATE_EPOCH
/// holds; without that, or with anything else in it, it goes on. MAIN.
void useClockOfEnvironment();

} // namespace zephyra
