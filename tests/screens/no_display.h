// kNoDisplay: keeps JUCE in tests off the displays of other tests.
#pragma once

#include <cstdlib>

namespace zephyra {

/// Without DISPLAY JUCE tries ":0", which may be another test's, and ends with it.
inline const int kNoDisplay = ::setenv("DISPLAY", ":none", 1);

} // namespace zephyra
