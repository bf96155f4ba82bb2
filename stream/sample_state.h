// sampleState and readSampleState: a stream's sample as states keep it.
#pragma once

#include "platform/lists/property_reader.h"
#include "stream/stream_controller.h"
#include "stream/stream_state.h"

#include <optional>
#include <string>

namespace zephyra {

/// "Path", "RelativePath", "ContentHash", "SampleRate", what a newer program wrote beside, and the
/// sound itself as "Audio" where saveStreamState says so; empty for a sound that came from no file.
/// Encodes a sound that could have been, but was not, encoded when it was loaded. MAIN.
PropertyDictionary sampleState(MOK_SCRUB_GRANULATOR& stream, StateUse use);

/// The reference that stands under key; nothing, after a finding, for one that names no file.
/// MAIN.
std::optional<SampleReference> readSampleState(PropertyReader& state, const std::string& key);

} // namespace zephyra
