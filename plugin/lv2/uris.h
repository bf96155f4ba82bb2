// Lv2Uris: what a host calls the types that pass between it and the plug-ins.
#pragma once

#include <lv2/urid/urid.h>

namespace zephyra {

/// Plain data, of one host; 0 is no type.
struct Lv2Uris {
    LV2_URID atomSequence, atomObject, atomBlank, atomResource;
    LV2_URID atomInt, atomLong, atomFloat, atomDouble, atomBool;
    LV2_URID atomChunk, atomVector;
    LV2_URID midiEvent;
    LV2_URID timePosition, bar, barBeat, beat, beatUnit, beatsPerBar, beatsPerMinute, frame, speed;
    LV2_URID maxBlockLength, nominalBlockLength;
    LV2_URID state, ports; ///< keys of what is saved
    LV2_URID logNote, logError;

    explicit Lv2Uris(const LV2_URID_Map& map);
};

} // namespace zephyra
