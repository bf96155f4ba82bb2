// OfflineRender: one stream rendered from first frame to last, as fast as it goes.
#pragma once

#include "cli/control_names.h"
#include "engine/grain_trace.h"
#include "platform/random_source.h"
#include "platform/result.h"
#include "stream/stream_controller.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace zephyra {

enum class SourceUse { loaded, live };

/// Everything that decides the sound. The same plan and source give the same samples.
struct RenderPlan {
    double sampleRate;        ///< Hz
    std::uint64_t playFrames; ///< while grains start
    std::uint64_t frames;     ///< all, with the echo's tail
    int blockFrames;          ///< per render call; the one that reaches playFrames is shorter
    std::uint32_t seed;       ///< from 1 up
    std::size_t envelope;     ///< position in the menu
    SourceUse use;
    std::vector<ControlSetting> settings;    ///< over the defaults, in order
    std::vector<TimedSetting> timedSettings; ///< sorted; each at the start of its block
    std::optional<float> start, end;         ///< fractions of the source
};

/// One block as it was rendered.
struct RenderedBlock {
    std::uint64_t firstFrame;
    std::uint32_t frames;
    float* left; ///< may be overwritten
    float* right;
    std::span<const GrainRecord> grains; ///< those that were scheduled in it
    float scanPosition;                  ///< fraction of the source, at the last frame
    float amplitude;                     ///< that the block's grains started with
};

struct RenderStatistics {
    std::uint64_t startedGrains = 0, droppedGrains = 0;
    double renderSeconds = 0; ///< of this machine's time, the consumer's not counted
};

/// The frame of the output at which settings of this time are due.
std::uint64_t dueFrame(double seconds, double sampleRate);

/// Order of calls: prepare, run once. MAIN; it is RENDER itself meanwhile.
class OfflineRender {
public:
    /// A failure of the consumer ends the render.
    using Consumer = std::function<Result<void>(const RenderedBlock&)>;

    explicit OfflineRender(RenderPlan plan);
    ~OfflineRender();
    OfflineRender(const OfflineRender&) = delete;
    OfflineRender& operator=(const OfflineRender&) = delete;

    /// Loads source, or keeps it to be fed as live input. Sets up everything that holds from the
    /// first frame on.
    Result<void> prepare(std::shared_ptr<mokSample> source);

    Result<RenderStatistics> run(const Consumer& consumer);

    /// Frames of the buffer that live input is kept in.
    static constexpr std::uint64_t kLiveFrames = WaveForm::kLiveFrames;

private:
    Result<void> apply(const ControlSetting& setting);
    Result<void> applyDue(std::uint64_t blockEnd);
    void silenceNewGrains();
    std::uint32_t nextBlockLength(std::uint64_t firstFrame) const;
    void renderBlock(std::uint64_t firstFrame, std::uint32_t frames);
    void feedInput(std::uint64_t firstFrame, std::uint32_t frames);
    void takeGrains(std::uint64_t firstFrame);

    RenderPlan plan_;
    RandomSource sourceBefore_;
    NotificationCenter notifications_;
    AudioSession session_;
    MOK_SCRUB_GRANULATOR stream_;
    std::unique_ptr<GrainTrace> trace_;
    std::shared_ptr<mokSample> source_;
    std::size_t nextSetting_ = 0;
    std::vector<float> input_, left_, right_;
    std::vector<GrainRecord> grains_;
    RenderStatistics statistics_;
};

} // namespace zephyra
