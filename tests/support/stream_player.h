// Player: a stream with what loads, exports, saves and restores its sound.
#pragma once

#include "stream/live_export.h"
#include "stream/state_sounds.h"
#include "stream/stream_state.h"
#include "tests/support/stream_probe.h"
#include "tests/support/test_stream.h"

namespace zephyra {

using Frames = std::vector<float>;

/// Its shared folder is folder/shared.
struct Player : TestStream {
    SampleLoader loader{instance, controller};
    LiveExport exporter{instance, controller};

    /// Of the state restored last.
    StateFindings findings;
    SampleReport report;

    explicit Player(const TemporaryFolder& folder) { instance.folders.shared = folder / "shared"; }
    /// Until nothing is being read or written.
    void finishWork() { instance.runLoop.finishWork(); }
    void hear(Frames input) {
        const ChannelList list{input.data()};
        drawLiveWaveForm(&controller.waveForm(), static_cast<int>(input.size()), list.list);
    }
    /// What grains are cut from.
    const mokSample& sound() { return *StreamProbe::sample(controller.engine()); }
    PropertyDictionary state(StateUse use = StateUse::session) {
        PropertyDictionary saved;
        saveStreamState(controller, saved, use);
        if (use == StateUse::snapshot) return saved;
        StateSounds sounds(controller);
        sounds.encode();
        sounds.addTo(saved, controller);
        return saved;
    }
    void restore(const PropertyDictionary& state) {
        findings.clear();
        report = {};
        PropertyReader reader(state, findings);
        restoreStreamState(controller, loader, reader,
                           [this](const SampleReport& ended) { report = ended; });
        finishWork();
    }
    /// The message that was shown; empty for none.
    std::string takeAlert() {
        const Alert* const alert = instance.alerts.current();
        const std::string message = alert ? alert->message : "";
        instance.alerts.answer("Ok");
        return message;
    }
};

} // namespace zephyra
