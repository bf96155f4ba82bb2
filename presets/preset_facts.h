// PresetFacts: what a list tells of a preset besides its name.
#pragma once

#include "platform/lists/property_list.h"

#include <string>

namespace zephyra {

/// Plain data.
struct PresetFacts {
    std::string sample; ///< its file's name; empty when it names none
    bool listensToInput = false;
    bool holdsSound = false;   ///< one that was captured
    bool followsTempo = false; ///< the host's: its scan, its echo or an LFO
};

/// What stands in a snapshot record, without a look at any file. MAIN.
PresetFacts presetFacts(const PropertyDictionary& record);

/// "live input", the sample's file name, "captured sound", or "no sound".
std::string soundText(const PresetFacts& facts);

} // namespace zephyra
