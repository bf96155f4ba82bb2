// OfflineRender: one instrument or effect rendered from first frame to last, as fast as it goes.
#pragma once

#include "engine/grain_trace.h"
#include "hosting/hosted_instance.h"
#include "hosting/offline_host.h"
#include "library/known_files.h"
#include "platform/text/log.h"
#include "platform/text/result.h"
#include "rendering/held_input.h"
#include "rendering/render_motion.h"
#include "rendering/render_plan.h"
#include "rendering/render_source.h"
#include "rendering/rendered_block.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace zephyra {

/// Order of calls: prepare, run once. MAIN; it is RENDER itself meanwhile.
class OfflineRender {
public:
    /// A failure of the consumer ends the render.
    using Consumer = std::function<Result<void>(const RenderedBlock&)>;

    /// folders: where the store and samples are looked for. What known knows is not read again. log
    /// gets what the instance reports, standard error where it is empty.
    OfflineRender(RenderPlan plan, const Folders& folders, const KnownFiles& known = {},
                  LogSink log = {});
    ~OfflineRender();
    OfflineRender(const OfflineRender&) = delete;
    OfflineRender& operator=(const OfflineRender&) = delete;

    /// Builds the whole system, loads what is to be played, sets everything that holds from the
    /// first frame on, and completes the plan with what only the system knows.
    Result<void> prepare(RenderSource source);

    /// Complete after prepare.
    const RenderPlan& plan() const noexcept { return plan_; }

    Result<RenderStatistics> run(const Consumer& consumer);

    /// Everything as it stands after run, for saving.
    PropertyDictionary state();

    /// What the render started from, as a preset holds it; empty unless the plan saves one.
    const PropertyDictionary& snapshot() const { return snapshot_; }

    /// Where the scan stood while grains started; null where the plan keeps no take.
    const TakeRecorder* recordedTake() const { return motion_.recorded(); }

private:
    static Failure memoryIsShort();
    Result<void> loadSample();
    Result<void> restore();
    Result<void> restoreState();
    Result<void> restorePreset();
    void completeRegion();
    void leaveProgramsOut();
    Result<void> takeSnapshot();
    Result<void> apply(const ControlSetting& setting);
    Result<void> applySettings();
    Result<void> applyScanSettings();
    Result<void> applyRegion();
    Result<void> applyHostOptions();
    Result<void> scheduleFreeze();
    void completePlan();
    void startTransport();
    void queueMusic(std::uint64_t firstFrame, std::uint32_t frames);
    void goOnWith(const TimedMusic& music);
    void queueSettings(std::uint64_t firstFrame, std::uint32_t frames);
    void queueStop(std::uint64_t firstFrame);
    void queueAutomation(std::uint64_t firstFrame, std::uint32_t frames);
    void queueMidi(std::uint64_t firstFrame, std::uint32_t frames);
    std::uint32_t nextBlockLength(std::uint64_t firstFrame) const;
    Result<void> renderBlock(std::uint64_t firstFrame, std::uint32_t frames);
    void beginCycle(std::uint32_t end);
    CycleScan nextScan(std::uint32_t frames);
    const float* inputAt(const std::vector<float>& channel, std::vector<float>& padded,
                         std::uint64_t firstFrame, std::uint32_t frames) const;
    void takeGrains();
    MOK_SCRUB_GRANULATOR& stream() { return controller_._GRANULATOR_STREAM; }

    RenderPlan plan_;
    std::unique_ptr<GrainTrace> trace_;
    HostedInstance system_;
    Instance& instance_ = system_.instance;
    AudioUnitViewController& controller_ = system_.view;
    RenderMotion motion_;
    OfflineHost host_;
    RenderSource source_;
    std::size_t nextMusic_ = 0, nextSetting_ = 0, nextMidi_ = 0;
    std::vector<AutomationLane> lanes_; // one per automated parameter
    std::vector<float> paddedLeft_, paddedRight_, left_, right_;
    std::vector<GrainRecord> grains_;
    std::vector<RenderedCycle> cycles_; // of the present block
    std::uint64_t blockFirst_ = 0;
    HeldInput heldInput_;
    bool inTail_ = false;
    std::optional<Failure> failed_; // what was to be set at its time
    RenderStatistics statistics_;
    PropertyDictionary snapshot_;
    std::optional<MidiManager::Navigation> navigation_; // what the state has, where run has another
};

} // namespace zephyra
