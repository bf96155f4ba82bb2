// AUAudioUnitPreset: a preset as a host sees it, by number and name.
#pragma once

#include "platform/audio_unit/audio_unit_parameters.h"
#include "platform/audio_unit/audio_unit_status.h"
#include "platform/lists/property_list.h"

#include <cstdint>
#include <string>

namespace zephyra {

/// Plain data. 0 and above: of the factory; below: the user's own, kept by the host.
struct AUAudioUnitPreset {
    std::int64_t number = 0;
    std::string name;
    bool operator==(const AUAudioUnitPreset&) const = default;
};

/// What the platform itself keeps of an audio unit that adds nothing: who it is ("type", "subtype",
/// "manufacturer", "version") and the value of every parameter ("data": for each in address order
/// the address, 4 bytes, and the value, a 4-byte float, both big-endian). tree may be null. MAIN.
PropertyDictionary defaultFullState(const AudioComponentDescription& description,
                                    const AUParameterTree* tree);

} // namespace zephyra
