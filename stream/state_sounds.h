// StateSounds: the sounds that a session's state takes along, encoded without holding MAIN.
#pragma once

#include "platform/files/folders.h"
#include "platform/lists/property_list.h"
#include "platform/sound/file_facts.h"
#include "stream/captured_state.h"
#include "stream/embedded_sample.h"
#include "stream/sample_loader.h"
#include "stream/stream_controller.h"

#include <memory>
#include <optional>
#include <string>

namespace zephyra {

/// Order of calls: construct, encode, addTo. Encoding a minute takes tens of milliseconds, in which
/// a stream goes on and may get another sound; the state is of what was there at the beginning.
class StateSounds {
public:
    /// Takes what there is to encode; what was encoded before is taken as it is. What live input
    /// heard does not go along while loader, null for none, reads the sound that takes its place:
    /// it would be heard instead of that. MAIN.
    explicit StateSounds(MOK_SCRUB_GRANULATOR& stream, const SampleLoader* loader = nullptr);

    /// Any thread but RENDER; uses the stream's log at most.
    void encode();

    /// Adds "Audio" to the sample of state, if it has one, and what live input heard; what was
    /// encoded is kept for the next state, if the stream still has that sound. The stream is the
    /// one of the beginning. MAIN.
    void addTo(PropertyDictionary& state, MOK_SCRUB_GRANULATOR& stream);

private:
    void addSample(PropertyDictionary& state, MOK_SCRUB_GRANULATOR& stream) const;

    Log& log_;
    const Folders folders_;
    const std::shared_ptr<FileFacts> files_;
    const SampleReference reference_;
    std::shared_ptr<const mokSample> sound_;         // to be encoded; null for none
    std::shared_ptr<const EmbeddedSample> embedded_; // null for a sound that does not go along
    CapturedSound captured_;
};

} // namespace zephyra
