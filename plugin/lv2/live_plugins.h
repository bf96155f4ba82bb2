// livePlugin and its kin: the instances that this library has made and not yet destroyed.
#pragma once

#include <lv2/core/lv2.h>

namespace zephyra {

class Lv2Plugin;

/// So that a window trusts the handle that a host gives it for the instance's only when it is one
/// of this very library's, and not of another version in the same process. HOST.
void addLivePlugin(Lv2Plugin& plugin);
void removeLivePlugin(Lv2Plugin& plugin);
/// Null for what is none.
Lv2Plugin* livePlugin(LV2_Handle handle);

} // namespace zephyra
