// capturedState and restoreCaptured: what live input heard, as states keep it.
#pragma once

#include "platform/lists/property_reader.h"
#include "stream/stream_controller.h"

#include <string>

namespace zephyra {

/// The current sound as FLAC (kept_sound.h) when it is a live or captured one that holds anything;
/// else empty. One that stands still is encoded once. Nothing but a log line when it cannot be
/// kept. MAIN.
PropertyDictionary capturedState(MOK_SCRUB_GRANULATOR& stream);

/// Makes such a dictionary the stream's captured sound; LIVE goes off. Keys that it does not know
/// are handed back for as long as that sound is kept. key is where it stands in state. False, after
/// a finding and with nothing changed, for one that holds no sound. MAIN.
bool restoreCaptured(MOK_SCRUB_GRANULATOR& stream, const PropertyDictionary& captured,
                     PropertyReader& state, const std::string& key);

} // namespace zephyra
