// birdsong: the second built-in sample, a blackbird on a roof in the evening.
#pragma once

#include "resources/make_samples/signal.h"

namespace zephyra {

/// The sound, 13 s long: calls of a fluted motif and a high twitter, with silence between them.
Signal birdsong();

} // namespace zephyra
