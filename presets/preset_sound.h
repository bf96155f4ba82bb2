// findPresetSound: the sound that a preset plays when nothing takes its place.
#pragma once

#include "engine/sample_buffer.h"
#include "platform/files/folders.h"
#include "platform/text/result.h"
#include "presets/preset_choice.h"
#include "stream/sample_reference.h"

#include <memory>
#include <string_view>

namespace zephyra {

struct PresetSound {
    std::shared_ptr<mokSample> sample; ///< as it was loaded; never null
    SampleReference reference;         ///< with its length and channels
};

/// Reads it as a stream does: from its file, wherever that is now, else from the audio that the
/// preset holds. Fails with one line for a sound that is missing. MAIN.
Result<PresetSound> findPresetSound(const PresetChoice& preset, const Folders& folders);

/// Whether the line tells that a file was replaced by another sound, which nobody should miss. Any
/// thread.
bool tellsOfOtherSound(std::string_view logLine);

} // namespace zephyra
