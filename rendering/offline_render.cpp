#include "rendering/offline_render.h"

#include "controls/state_keys.h"
#include "platform/text/message_text.h"

#include <algorithm>
#include <string>
#include <utility>

namespace zephyra {

namespace {

/// While it lives, states are restored without a line in the log.
class HeldReports {
public:
    explicit HeldReports(AudioUnitViewController& controller) : controller_(controller) {
        controller.setReportTaker([](const RestoreReport&) {});
    }
    HeldReports(const HeldReports&) = delete;
    HeldReports& operator=(const HeldReports&) = delete;
    ~HeldReports() { controller_.setReportTaker({}); }

private:
    AudioUnitViewController& controller_;
};

/// But for the selection in the store: nobody who renders asked for one.
void writeNews(Log& log, RestoreReport report) {
    report.selection.reset();
    for (const std::string& line : linesOf(report)) log.write(line);
}

} // namespace

OfflineRender::OfflineRender(RenderPlan plan, const Folders& folders, const KnownFiles& known,
                             LogSink log)
    : plan_(std::move(plan)), trace_(std::make_unique<GrainTrace>()),
      system_(plan_.host.type.value_or(component_type::instrument),
              [&](Instance& instance) {
                  instance.log.setSink(std::move(log));
                  instance.folders = folders;
                  instance.random.seed(plan_.seed);
                  instance.clock = plan_.clock;
                  instance.fileFacts = known.sounds;
              }),
      motion_(instance_, controller_), host_(*system_.unit, instance_) {
    const auto block = static_cast<std::size_t>(plan_.blockFrames);
    for (std::vector<float>* samples : {&paddedLeft_, &paddedRight_, &left_, &right_})
        samples->resize(block);
    controller_.presets.bankFolder().setCache(known.banks);
    host_.setMidiInlet(&system_.inlet);
    host_.setCycleListener([this](std::uint32_t end) { beginCycle(end); });
}

OfflineRender::~OfflineRender() {
    host_.stop();
}

Failure OfflineRender::memoryIsShort() {
    return {"memory is too short for the source; shorten it or free some"};
}

Result<void> OfflineRender::loadSample() {
    if (!source_.sample || stream().loadSound(source_.sample, source_.reference)) return {};
    return memoryIsShort();
}

Result<void> OfflineRender::restoreState() {
    if (!plan_.state) return {};
    const HeldReports held(controller_);
    {
        PropertyDictionary state = *plan_.state;
        if (source_.sample) state.erase(ofStream(state_key::kSample)); // would only be replaced
        const RunLoop::Scope main(instance_.runLoop);
        controller_.restoreStateProc(state);
    }
    instance_.runLoop.finishWork(); // a sample that the state names
    if (const Alert* const alert = instance_.alerts.current())
        return Failure{"--state " + inputTitle(*plan_.host.state) + ": " + alert->message +
                       "; --sample FILE names another"};
    writeNews(instance_.log, controller_.restoreReport());
    return {};
}

/// Through the store, which then knows what is selected.
Result<void> OfflineRender::restorePreset() {
    const PresetChoice& preset = *plan_.preset;
    const HeldReports held(controller_);
    {
        const RunLoop::Scope main(instance_.runLoop);
        controller_.presets.loadDefaultSnapshot_snapID(preset.bank, preset.key);
    }
    instance_.runLoop.finishWork(); // its sample
    // A sample that is missing was found, or replaced, before; behind live input nobody hears it.
    const RunLoop::Scope main(instance_.runLoop);
    const Bank* const bank = controller_.presets.getSelectedBankDictionary();
    if (!bank || !bank->contains(preset.key))
        return Failure{"preset " + inQuotes(preset.name) + " has left " + preset.bank +
                       " meanwhile; try again"};
    if (!source_.sample) writeNews(instance_.log, controller_.restoreReport());
    if (plan_.turnsLiveOn) return apply({ControlId::live, 1});
    return {};
}

Result<void> OfflineRender::restore() {
    if (plan_.preset) return restorePreset();
    return restoreState();
}

Result<void> OfflineRender::prepare(RenderSource source) {
    source_ = std::move(source);
    {
        const RunLoop::Scope main(instance_.runLoop);
        instance_.runLoop.setClock(RunLoop::Clock::sample);
        instance_.session = {.sampleRate = plan_.sampleRate,
                             .IOBufferDuration = plan_.blockFrames / plan_.sampleRate};
        if (plan_.isInstrument()) // at once: then no other sample is loaded
            if (const auto loaded = loadSample(); !loaded) return loaded;
        if (!plan_.state && !plan_.preset)
            if (const auto done = applyScanSettings(); !done) return done;
        system_.connect();
    }
    const OSStatus started =
        host_.start({.sampleRate = plan_.sampleRate,
                     .blockFrames = std::min(static_cast<std::uint32_t>(plan_.blockFrames),
                                             MyAudioUnit::kMostFramesToRender)});
    if (started != audio_unit_status::noError)
        return Failure{"the audio unit does not start (" + std::to_string(started) +
                       "); memory may be short"};
    if (const auto restored = restore(); !restored) return restored;

    {
        const RunLoop::Scope main(instance_.runLoop);
        if (const auto loaded = loadSample(); !loaded) return loaded;
    }
    instance_.runLoop.runPosted(); // what the change of the sound brought about
    const RunLoop::Scope main(instance_.runLoop);
    if (const auto done = applyHostOptions(); !done) return done;
    if (const auto done = applySettings(); !done) return done;
    stream().engine().setRandomSeed(plan_.seed);
    stream().setSeed(plan_.seed);
    stream().engine().setTrace(trace_.get());
    if (const auto done = scheduleFreeze(); !done) return done;
    if (const auto done = motion_.apply(plan_); !done) return done;
    if (!plan_.host.programs) leaveProgramsOut();
    completePlan();
    startTransport();
    motion_.start(plan_);
    return plan_.isSaved ? takeSnapshot() : Result<void>();
}

/// Most files choose instruments of their own machine, which are no presets. A bound controller 0
/// still moves what it is bound to.
void OfflineRender::leaveProgramsOut() {
    MidiManager::Navigation navigation = controller_.midiManager.navigation();
    navigation_ = navigation;
    navigation.programsSelectPresets = navigation.bankSelectsBanks = false;
    controller_.midiManager.setNavigation(navigation);
}

PropertyDictionary OfflineRender::state() {
    if (navigation_) controller_.midiManager.setNavigation(*navigation_);
    return controller_.getState();
}

/// Before anything moves, but with the buttons of what is about to move down.
Result<void> OfflineRender::takeSnapshot() {
    instance_.runLoop.runPosted();
    const std::string before = stream().sampleReference().path;
    snapshot_ = controller_.snapshotState();
    const SampleReference& sound = stream().sampleReference();
    if (sound.embedded && sound.embedded->isOnlyCopy && sound.frames > 0)
        return Failure{"--save-preset: its sound, " + before + ", cannot be kept in " +
                       instance_.folders.shared.string() + "; make room there"};
    if (sound.path != before)
        plan_.notices.push_back("the preset's sound, " + before + ", is kept in " + sound.path);
    return {};
}

/// The picture shows a preset's region as it does a typed one.
void OfflineRender::completeRegion() {
    if (!plan_.preset || plan_.use == SourceUse::live) return;
    const float start = stream().regionStart(), end = stream().regionEnd();
    if (start == 0.0f && end == 1.0f) return;
    plan_.start = start;
    plan_.end = end;
}

void OfflineRender::completePlan() {
    for (const ControlRange& range : controlRanges()) {
        const MOK_KNOB* const own = controller_.ownKnob(range.id);
        plan_.initial[static_cast<std::size_t>(range.id)] =
            own ? own->displayedValue() : stream().displayed(range.id);
    }
    plan_.use = stream().isLive() ? SourceUse::live : SourceUse::loaded;
    plan_.region = {stream().regionStart(), stream().regionEnd()};
    completeRegion();
    plan_.swept = motion_.sweptControls();
    plan_.echoRate = stream().echoRate();
    addEchoTail(plan_);
    plan_.moved = motion_.watch(plan_);
    plan_.counts = motion_.counts(plan_);
    lanes_ = automationLanes(plan_.automation, [this](ControlId id) {
        return linearFromDisplayed(controlRange(id), plan_.initial[static_cast<std::size_t>(id)]);
    });
}

/// Play is pressed, unless the host's transport is what starts the grains.
void OfflineRender::startTransport() {
    const HostRequest& host = plan_.host;
    const bool follows = stream().controls.syncSampler.isOn();
    if (plan_.reportsContext() || follows) {
        host_.reportContext(true);
        host_.setTempo(host.tempo.value_or(kDefaultTempo));
        const auto [beats, value] = host.meter.value_or(kDefaultMeter);
        host_.setMeter(beats, value);
        host_.setBeatPosition(0.0);
    }
    if (!host.transport && !follows) {
        stream().setDisplayed(ControlId::playStop, 1.0f);
        return;
    }
    const bool plays = host.transport.value_or(HostTransport::play) == HostTransport::play;
    host_.reportTransport(true);
    host_.setTransport(plays);
    // A stream that does not follow the transport is started by the parameter, as hosts can.
    if (plays && !follows)
        host_.queueParameter(static_cast<AUParameterAddress>(ControlId::playStop), 1.0f);
}

} // namespace zephyra
