// PlayedSystem: an instance behind an offline host, for what attacks it.
#pragma once

#include "hosting/hosted_instance.h"
#include "hosting/offline_host.h"
#include "tests/support/heard_instance.h"

namespace zephyra {

/// Nothing is in its folders, and its seed is 1. MIDI reaches the unit and the controls.
struct PlayedSystem : HeardLog, HostedInstance {
    PlayedSystem(FourCharCode type, const HostSetup& setup)
        : HostedInstance(type, [this](Instance& empty) {
              hear(empty);
              empty.folders = {"/nonexistent/shared", "/nonexistent/resources"};
          }) {
        connect();
        stream().setSeed(1);
        host.start(setup);
        host.setMidiInlet(&inlet);
    }

    OfflineHost host{*unit, instance};
};

} // namespace zephyra
