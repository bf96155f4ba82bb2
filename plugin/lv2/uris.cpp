#include "plugin/lv2/uris.h"

#include "plugin/lv2/ports.h"

#include <lv2/atom/atom.h>
#include <lv2/buf-size/buf-size.h>
#include <lv2/log/log.h>
#include <lv2/midi/midi.h>
#include <lv2/time/time.h>

namespace zephyra {

Lv2Uris::Lv2Uris(const LV2_URID_Map& map) {
    const auto of = [&](const char* uri) { return map.map(map.handle, uri); };
    atomSequence = of(LV2_ATOM__Sequence);
    atomObject = of(LV2_ATOM__Object);
    atomBlank = of(LV2_ATOM__Blank);
    atomResource = of(LV2_ATOM__Resource);
    atomInt = of(LV2_ATOM__Int);
    atomLong = of(LV2_ATOM__Long);
    atomFloat = of(LV2_ATOM__Float);
    atomDouble = of(LV2_ATOM__Double);
    atomBool = of(LV2_ATOM__Bool);
    atomChunk = of(LV2_ATOM__Chunk);
    atomVector = of(LV2_ATOM__Vector);
    midiEvent = of(LV2_MIDI__MidiEvent);
    timePosition = of(LV2_TIME__Position);
    bar = of(LV2_TIME__bar);
    barBeat = of(LV2_TIME__barBeat);
    beat = of(LV2_TIME__beat);
    beatUnit = of(LV2_TIME__beatUnit);
    beatsPerBar = of(LV2_TIME__beatsPerBar);
    beatsPerMinute = of(LV2_TIME__beatsPerMinute);
    frame = of(LV2_TIME__frame);
    speed = of(LV2_TIME__speed);
    maxBlockLength = of(LV2_BUF_SIZE__maxBlockLength);
    nominalBlockLength = of(LV2_BUF_SIZE__nominalBlockLength);
    state = of(kLv2StateUri);
    ports = of(kLv2PortsUri);
    logNote = of(LV2_LOG__Note);
    logError = of(LV2_LOG__Error);
}

} // namespace zephyra
