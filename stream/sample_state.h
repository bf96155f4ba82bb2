// sampleState and readSampleState: a stream's sample as states keep it.
#pragma once

#include "platform/lists/property_reader.h"
#include "stream/stream_controller.h"
#include "stream/stream_state.h"

#include <optional>
#include <string>

namespace zephyra {

/// "Path", "RelativePath", "ContentHash", "SampleRate", and what a newer program wrote beside;
/// empty for a sound that came from no file. MAIN.
PropertyDictionary sampleState(MOK_SCRUB_GRANULATOR& stream, StateUse use);

/// The reference that stands under key; nothing, after a finding, for one that names no file.
/// MAIN.
std::optional<SampleReference> readSampleState(PropertyReader& state, const std::string& key);

} // namespace zephyra
