// findPresetSound: the sound that a preset plays when nothing takes its place.
#pragma once

#include "engine/sample_buffer.h"
#include "platform/files/folders.h"
#include "platform/sound/file_facts.h"
#include "platform/text/result.h"
#include "presets/preset_choice.h"
#include "stream/sample_reference.h"
#include "stream/sample_report.h"

#include <memory>

namespace zephyra {

struct PresetSound {
    std::shared_ptr<const mokSample> sample; ///< as it was loaded; never null
    SampleReference reference;               ///< with its length and channels
    SampleReport report;                     ///< of how it was found
};

/// Reads it as a stream does: from its file, wherever that is now, else from the audio that the
/// preset holds; the report tells of a file that holds another sound now. Fails with one line for a
/// sound that is missing. Whoever restores the preset with the same files, and has this sound,
/// reads none again. MAIN.
Result<PresetSound> findPresetSound(const PresetChoice& preset, const Folders& folders,
                                    std::shared_ptr<FileFacts> files);

} // namespace zephyra
