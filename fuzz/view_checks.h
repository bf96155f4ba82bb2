// firstFault: what must hold of a whole system at every moment, whatever was done to it.
#pragma once

#include <string>

namespace zephyra {

class AudioUnitViewController;

/// Every knob inside its range, scan, take and pad inside 0..1, a recorder that does one thing at a
/// time, and controls that nobody drives but whom the table names. Answers the first that is not
/// so; empty when all is well. MAIN.
std::string firstFault(AudioUnitViewController& view);

} // namespace zephyra
