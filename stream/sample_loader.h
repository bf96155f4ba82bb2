// SampleLoader: reads sound files into a stream without stopping the one that plays.
#pragma once

#include "platform/relaxed.h"
#include "platform/result.h"
#include "platform/worker.h"
#include "stream/stream_controller.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>

namespace zephyra {

/// Reads on WORKER, hands over on MAIN; the latest request wins, and the old sound plays until the
/// new one is ready. A file that is missing or cannot be read is named in an alert "Warning" with
/// "Ok", and the old sound stays. MAIN.
class SampleLoader {
public:
    /// Both must outlive this.
    SampleLoader(Instance& instance, MOK_SCRUB_GRANULATOR& stream);

    /// Called on MAIN when a load ended, with whether the sound was taken.
    using Ended = std::function<void(bool loaded)>;

    /// Starts reading the file at path. If LIVE goes on meanwhile, the sound waits behind it.
    void loadSamplePerform(const std::filesystem::path& path, Ended ended = {});

    /// Starts reading the file that a state names, wherever it was moved to (findSample). The
    /// stream's reference becomes this one at once and stays so when the file is missing, so that
    /// the next state still names it.
    void loadReference(const SampleReference& reference, SoundUse use, Ended ended = {});

    /// Drops what is being read.
    void cancel();

    /// Whether a file is being read.
    bool isLoading() const { return worker_.busy(); }
    /// The share that was read, 0..1. Any thread.
    double progress() const { return *progress_; }
    /// How many loads were asked for since construction.
    std::uint64_t requests() const { return requests_; }

private:
    /// The file to be read. WORKER.
    using Find = std::function<std::filesystem::path(const Worker::Cancelled& cancelled)>;
    void start(Find find, SoundUse use, Ended ended);

    Instance& instance_;
    MOK_SCRUB_GRANULATOR& stream_;
    std::shared_ptr<Relaxed<double>> progress_; // the running job keeps it too
    std::uint64_t requests_ = 0;
    Worker worker_; // last: its thread ends before what it uses
};

/// Reads path as a stream plays it: mono, with the reference that states keep. shared: the folder
/// that paths are also kept relative to. progress as for readSoundFile. Fails with one line that
/// names the file. MAIN or WORKER.
struct LoadedSample {
    std::shared_ptr<mokSample> sound;
    SampleReference reference;
};
Result<LoadedSample> readSample(const std::filesystem::path& path,
                                const std::filesystem::path& shared,
                                const std::function<bool(double)>& progress = {});

} // namespace zephyra
