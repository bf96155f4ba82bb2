// CapturedSound and restoreCaptured: what live input heard, as states keep it.
#pragma once

#include "platform/lists/property_reader.h"
#include "platform/sound/flac_codec.h"
#include "platform/text/log.h"
#include "stream/captured_memory.h"
#include "stream/stream_controller.h"

#include <memory>
#include <string>
#include <vector>

namespace zephyra {

/// What live input heard until some moment, on its way into a state. Plain data.
struct CapturedSound {
    CapturedMemory::Version version = {};
    std::vector<float> frames = {};  ///< what is still to be encoded
    double rate = 0.0;               ///< Hz
    PropertyDictionary sound = {};   ///< as FLAC (kept_sound.h); empty for none
    PropertyDictionary unknown = {}; ///< what a newer program wrote beside it

    /// Nothing but a line in log when it cannot be kept. Any thread but RENDER.
    void encode(Log& log);
};

/// Which sound the live buffer holds now. MAIN.
CapturedMemory::Version versionOf(const MOK_SCRUB_GRANULATOR& stream);

/// The current sound when it is a live or captured one that holds anything; else empty. One that
/// stands still is encoded once. MAIN.
CapturedSound takeCaptured(MOK_SCRUB_GRANULATOR& stream);

/// What the state keeps of it, empty for nothing; the encoded sound is remembered if it is still
/// the stream's. MAIN.
PropertyDictionary keepCaptured(MOK_SCRUB_GRANULATOR& stream, const CapturedSound& captured);

/// Makes such a dictionary the stream's captured sound; LIVE goes off. Keys that it does not know
/// are handed back for as long as that sound is kept. key is where it stands in state. False, after
/// a finding and with nothing changed, for one that holds no sound. MAIN.
bool restoreCaptured(MOK_SCRUB_GRANULATOR& stream, const PropertyDictionary& captured,
                     PropertyReader& state, const std::string& key);

/// Decodes what restoreCaptured will need of state, so that MAIN need not; null for a state without
/// such a sound. suffix is the stream's channel. Any thread but RENDER.
std::shared_ptr<Result<DecodedFlac>> decodeAhead(const PropertyDictionary& state,
                                                 const std::string& suffix);

} // namespace zephyra
