// PlayedSystem: an instance behind an offline host, the bytes that attack it, and what must hold of
// it at every moment, whatever was done to it.
#pragma once

#include "fuzz/byte_reader.h"
#include "hosting/hosted_instance.h"
#include "hosting/offline_host.h"
#include "tests/support/heard_instance.h"

namespace zephyra {

/// Nothing is in its folders, and its seed is 1. MIDI of the host, which is still to be started,
/// reaches the unit and the controls.
struct PlayedSystem : HeardLog, HostedInstance {
    explicit PlayedSystem(FourCharCode type, ByteReader program = ByteReader({}))
        : HostedInstance(type,
                         [this](Instance& empty) {
                             hear(empty);
                             empty.folders = {"/nonexistent/shared", "/nonexistent/resources"};
                         }),
          bytes(program) {
        connect();
        stream().setSeed(1);
        host.setMidiInlet(&inlet);
    }

    OfflineHost host{*unit, instance};
    ByteReader bytes;
    std::string wrong; ///< what was; empty while all is well
};

/// Every knob inside its range, scan, take and pad inside 0..1, a recorder that does one thing at a
/// time, and controls that nobody drives but whom the table names. Answers the first that is not
/// so; empty when all is well. MAIN.
std::string firstFault(AudioUnitViewController& view);

} // namespace zephyra
