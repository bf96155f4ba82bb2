#include "hosting/plugin_instance.h"

#include "platform/files/folders.h"
#include "platform/text/text_numbers.h"

#include <algorithm>
#include <string>

namespace zephyra {

namespace {

FourCharCode componentType(PluginKind kind) {
    return kind == PluginKind::instrument ? component_type::instrument
                                          : component_type::musicEffect;
}

HostedInstance::Prepare orStandardFolders(const HostedInstance::Prepare& prepare) {
    if (prepare) return prepare;
    return [](Instance& instance) { instance.folders = standardFolders(); };
}

/// Before anybody drives its MAIN.
HostedInstance& connected(HostedInstance& system, PluginKind kind) {
    const RunLoop::Scope main(system.instance.runLoop);
    if (kind == PluginKind::standalone) system.unit->takeInputForLiveAlone();
    system.connect();
    return system;
}

} // namespace

PluginInstance::PluginInstance(PluginKind kind, const HostedInstance::Prepare& prepare)
    : kind_(kind), system_(componentType(kind), orStandardFolders(prepare)),
      host_(*system_.unit, system_.instance), offline_(host_, system_.instance),
      channels_(kind == PluginKind::effect ? HostChannels::Passes::input
                                           : HostChannels::Passes::silence),
      tail_(system_), notes_(connected(system_, kind).stream()),
      driver_(system_.instance.runLoop, system_.instance.log) {
    Instance& instance = system_.instance;
    const RunLoop::Scope main(instance.runLoop);
    mixSeed();
    restart_ = instance.runLoop.addSource([this] {
        if (!modulationStarts_) return;
        modulationStarts_ = false;
        system_.view.startModulationAnew();
    });
    offline_.setMidiInlet(&system_.inlet);
    if (isInstrument()) {
        system_.unbound = [this](const MidiMessage& message) { notes_.take(message); };
        system_.inlet.marked = [this] { notes_.playStopWasSet(); };
    }
    choose(session_);
    instance.runLoop.runPosted(); // what a fresh component begins with
    if (kind_ == PluginKind::effect) system_.stream().setDisplayed(ControlId::playStop, 1.0f);
}

PluginInstance::~PluginInstance() {
    release();
    const RunLoop::Scope main(system_.instance.runLoop);
    system_.instance.runLoop.cancel(restart_);
}

Result<void> PluginInstance::prepare(const PluginSetup& setup) {
    release();
    if (!(setup.sampleRate >= kLeastRate && setup.sampleRate <= kMostRate))
        return Failure{"the sample rate is " + formatShort(setup.sampleRate) +
                       " Hz; it must be 8000 to 384000"};
    const OSStatus status =
        host_.start({.sampleRate = setup.sampleRate,
                     .blockFrames = std::clamp<std::uint32_t>(setup.mostFrames, 1,
                                                              MyAudioUnit::kMostFramesToRender)});
    if (status != audio_unit_status::noError)
        return Failure{"the audio unit does not start (" + std::to_string(status) +
                       "); memory may be short"};
    tail_.setSampleRate(setup.sampleRate);
    channels_.setBypass(bypassed_);
    if (!channels_.start(setup.sampleRate, host_.setup().blockFrames)) {
        host_.stop();
        return Failure{"there is no memory for blocks of " +
                       std::to_string(host_.setup().blockFrames) + " frames; free some"};
    }
    system_.instance.runLoop.runPosted();
    return {};
}

std::uint64_t PluginInstance::droppedGrains() const noexcept {
    return system_.stream().engine().droppedGrains();
}

void PluginInstance::release() {
    host_.stop();
    load_.reset();
    rendersOffline_ = false;
    system_.instance.runLoop.runPosted(); // notes on their way are of the time before
    const RunLoop::Scope main(system_.instance.runLoop);
    notes_.startAnew();
    if (system_.instance.runLoop.clock() != RunLoop::Clock::wall)
        system_.instance.runLoop.setClock(RunLoop::Clock::wall);
}

} // namespace zephyra
