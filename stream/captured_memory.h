// CapturedMemory: what a stream remembers of its captured sound between two states.
#pragma once

#include "platform/lists/property_list.h"
#include "platform/text/result.h"

#include <cstdint>
#include <memory>

namespace zephyra {

struct DecodedFlac;

/// So that a sound that stands still is encoded once, and loses nothing that a state said of it.
/// Plain data. MAIN.
struct CapturedMemory {
    /// Which live sound it is, and how far that was written.
    struct Version {
        std::uint64_t replacements = 0, liveStarts = 0, heard = 0, offset = 0;
        std::uint64_t hold = 0; ///< its number among held sounds, from 1; 0 for none
        bool operator==(const Version&) const = default;
    };
    Version version = {};
    PropertyDictionary sound = {};   ///< as states keep it; empty until it is encoded
    PropertyDictionary unknown = {}; ///< what a newer program wrote beside it
    /// Of the state that is about to be restored; null for none.
    std::shared_ptr<Result<DecodedFlac>> ahead = {};
};

} // namespace zephyra
