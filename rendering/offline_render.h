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

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace zephyra {

/// What is played: a sample, a host's input, or both.
struct RenderSource {
    std::shared_ptr<const mokSample> sample = {}; ///< null for an effect on its input alone
    SampleReference reference = {};               ///< of sample
    /// The host's input, of equal length; empty: none.
    std::vector<float> inputLeft = {}, inputRight = {};
};

/// How the scan goes through a cycle.
struct CycleScan {
    bool plays = false;         ///< grains start; else it stands, and nobody hears where
    double phase = 0;           ///< where in its region it begins, 0 to 1
    double travel = 0;          ///< regions that it crosses by the cycle's end
    double start = 0, span = 1; ///< of the region; fractions of the buffer that is read
};

/// A part of a block that was rendered at one go: MAIN stood still meanwhile.
struct RenderedCycle {
    std::uint32_t end; ///< frames from the block's start; the next one begins there
    float amplitude;   ///< that its grains started with
    CycleScan scan = {};
    std::uint64_t heard = 0; ///< frames of live input that the sound it is cut from ends with
};

/// One block as it was rendered.
struct RenderedBlock {
    std::uint64_t firstFrame;
    std::uint32_t frames;
    float* left; ///< may be overwritten
    float* right;
    std::span<const GrainRecord> grains;   ///< those that were scheduled in it
    std::span<const RenderedCycle> cycles; ///< in order; at least one
    std::span<const float> moved = {};     ///< linear values of the plan's moved controls, after it

    /// Of a frame of the output that lies in this block.
    const RenderedCycle& cycleOf(std::uint64_t frame) const;
};

struct RenderStatistics {
    std::uint64_t startedGrains = 0, droppedGrains = 0;
    double renderSeconds = 0; ///< of this machine's time, the consumer's not counted
};

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

    /// Frames of the buffer that live input is kept in.
    static constexpr std::uint64_t kLiveFrames = WaveForm::kLiveFrames;

private:
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
    std::size_t nextSetting_ = 0, nextMidi_ = 0;
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
