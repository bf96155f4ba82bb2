// SampleLoader: reads sound files into a stream without stopping the one that plays.
#pragma once

#include "platform/text/result.h"
#include "platform/threads/relaxed.h"
#include "platform/threads/worker.h"
#include "stream/sample_reading.h"
#include "stream/stream_controller.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace zephyra {

/// Reads on WORKER, hands over on MAIN; the latest request wins, and the old sound plays until the
/// new one is ready. A file that is missing or cannot be read is named in an alert "Warning" with
/// "Ok", and the old sound stays; where a state names it, "Locate" lets the user pick another in
/// its place, as long as no other sound is being read or has come. Sounds that are short enough are
/// encoded on WORKER, too, so that states can take them along (embedded_sample.h). MAIN.
class SampleLoader {
public:
    /// Both must outlive this.
    SampleLoader(Instance& instance, MOK_SCRUB_GRANULATOR& stream);

    /// Called on MAIN once, when a load ended in whatever way; not after this is gone. An empty one
    /// leaves the report's lines to the log.
    using Ended = std::function<void(const SampleReport& report)>;

    /// Starts reading the file at path. If LIVE goes on meanwhile, the sound waits behind it.
    void loadSamplePerform(const std::filesystem::path& path, Ended ended = {});

    /// Starts reading what a state names, wherever it was moved to (readReferencedSample). The
    /// stream's reference becomes this one at once and stays so, embedded copy included, when
    /// nothing is found, so that the next state still has it.
    void loadReference(const SampleReference& reference, SoundUse use, Ended ended = {});

    /// The path of the sound that a state named and that was not found; empty when none is missing,
    /// and while another is being read.
    std::string missing() const;
    /// Starts reading file in its place, as "Locate" does; nothing happens when none is missing.
    void locateMissing(const std::filesystem::path& file);

    /// Drops what is being read; what was missing before still is.
    void cancel();

    /// Whether a file is being read.
    bool isLoading() const { return worker_.busy(); }
    /// Whether what the stream's reference names is being read and will be heard in the place of
    /// what live input left.
    bool replacesLive() const { return isLoading() && takesOver_ && !stream_.isLive(); }
    /// The share that was read, 0..1. Any thread.
    double progress() const { return *progress_; }
    /// How many loads were asked for since construction.
    std::uint64_t requests() const { return requests_; }

private:
    /// What becomes of a sound that was read, or of the failure.
    struct Order {
        SoundUse use = SoundUse::play;
        std::optional<SampleReference> named = {}; ///< by a state that needs it
        std::uint64_t liveStarts = 0;              ///< of the stream when it was asked for
        std::optional<float> peak = {};            ///< that Normalize wanted by then
    };
    /// WORKER; progress also tells whether the sound is still wanted.
    using Read = std::function<FoundSound(const std::function<bool(double)>& progress)>;

    LoadedSample loadedBefore();
    void readFile(const std::filesystem::path& path, Order order, Ended ended = {});
    void start(const std::filesystem::path& asked, Read read, Order order, Ended ended);
    void finish(const Order& order, FoundSound& found);
    void end(const SampleReport& report);
    std::string take(const Order& order, FoundSound& found);
    void tell(const Order& order, const std::string& problem);
    void locate(const std::string& path);
    bool isStillMissing(const std::string& path) const;

    Instance& instance_;
    MOK_SCRUB_GRANULATOR& stream_;
    std::shared_ptr<Relaxed<double>> progress_; // the running job keeps it too
    std::uint64_t requests_ = 0;
    bool takesOver_ = false; // the load asked for last, of a state's sound that is to be played
    std::weak_ptr<const mokSample> lastSound_; // the stream's, when another was last asked for
    SampleReference lastReference_;            // of that
    std::filesystem::path asked_;              // what the load that runs was asked for
    Ended ended_;                              // and who hears of its end
    std::optional<Order> missing_;             // the state's sound that was not found
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true); // an alert may outlive us
    Worker worker_; // last: its thread ends before what it uses
};

} // namespace zephyra
