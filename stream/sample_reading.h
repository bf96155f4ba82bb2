// readSample and readReferencedSample: a sound as a stream plays it, from a file or from a state.
#pragma once

#include "engine/sample_buffer.h"
#include "platform/files/folders.h"
#include "platform/sound/file_facts.h"
#include "platform/text/result.h"
#include "stream/normalized_sample.h"
#include "stream/sample_reference.h"
#include "stream/sample_report.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>

namespace zephyra {

struct LoadedSample {
    std::shared_ptr<const mokSample> sound = {}; ///< mono
    SampleReference reference = {};
};

/// shared: the folder that paths are also kept relative to. progress as for readSoundFile. atHand,
/// a sound that was read before, is the answer if the file still holds it: then nothing is decoded,
/// and where files knows the file, nothing is read. Fails with one line that names the file. MAIN
/// or WORKER.
Result<LoadedSample> readSample(const std::filesystem::path& path,
                                const std::filesystem::path& shared, FileFacts& files,
                                const std::function<bool(double)>& progress = {},
                                const LoadedSample& atHand = {});

/// The same of a file that stands open, read as reading says.
Result<LoadedSample> readSample(FileBytes& file, const std::filesystem::path& shared,
                                FileFacts& files, const SoundFileOptions& reading);

struct FoundSound {
    Result<LoadedSample> loaded;                ///< fails with one line that names the file
    SampleReport report;                        ///< of how it was found; it has not ended yet
    std::optional<PlayableSound> playable = {}; ///< once it is wanted for a stream
};

/// What the reference of a state means: a file with its content wherever that was moved to
/// (findSample), else the embedded copy, under the reference as it is, else a file of its name that
/// holds another sound now. The rest is as for readSample. MAIN or WORKER.
FoundSound readReferencedSample(const SampleReference& reference, const Folders& folders,
                                FileFacts& files, const std::function<bool(double)>& progress = {},
                                const LoadedSample& atHand = {});

} // namespace zephyra
