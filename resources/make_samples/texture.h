// texture: the first built-in sample, a glass struck and then bowed into a slowly turning chord.
#pragma once

#include "resources/make_samples/signal.h"

namespace zephyra {

/// The sound, 12 s long: all of it on one chord over C, so that grains from any two places agree.
Signal texture();

} // namespace zephyra
