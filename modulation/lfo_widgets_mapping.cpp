#include "modulation/lfo_widgets_mapping.h"

namespace zephyra {

// LFOs move controls, and controls live on MAIN: there is nothing to do here.
void lfotTickProcessing(LFO_WIDGETS_MAPPING*, int) ZEPHYRA_NONBLOCKING {}

} // namespace zephyra
