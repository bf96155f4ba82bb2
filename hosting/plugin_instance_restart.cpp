// How PluginInstance goes back to where the state has it, so that a second bounce is the first.
#include "hosting/plugin_instance.h"

namespace zephyra {

/// Else instances made in one second would sound alike. Odd, since an even one has a short period.
void PluginInstance::mixSeed() {
    MOK_SCRUB_GRANULATOR& stream = system_.stream();
    stream.setSeed((stream.seed() ^ system_.instance.random.next32()) | 1u);
}

/// Whether the setting has it at a transport start in such blocks, `always` for real time.
bool PluginInstance::startsAnew(StartAnew when) const ZEPHYRA_NONBLOCKING {
    const StartAnew chosen = startAnew_;
    return chosen == StartAnew::always || chosen == when;
}

/// What MAIN moves follows within its next turn; sounding grains and echoes are left alone.
void PluginInstance::startAnew() ZEPHYRA_NONBLOCKING {
    system_.stream().engine().startAnew();
    modulationStarts_ = true;
}

/// What a host sets for this block acts afterwards, whichever way it comes.
void PluginInstance::startAnewOffline() {
    const RunLoop::Scope main(system_.instance.runLoop);
    offline_.beginStretch();
    const HostTime& time = host_.time;
    MOK_SCRUB_GRANULATOR& stream = system_.stream();
    const bool hostMoves = time.reportsTransport() && time.isMoving();
    // The host's start is what starts such a stream, as it did the first time.
    notes_.startAnew();
    if (hostMoves && stream.controls.syncSampler.isOn()) stream.stopAtOnce();
    system_.unit->startAnew(hostMoves);
    system_.view.startAnew(time.reportsContext() ? HostBars::come : HostBars::doNotCome);
}

} // namespace zephyra
