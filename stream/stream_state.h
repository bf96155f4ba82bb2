// saveStreamState and restoreStreamState: everything of a stream that a preset keeps.
#pragma once

#include "platform/property_reader.h"
#include "stream/sample_loader.h"
#include "stream/stream_controller.h"

namespace zephyra {

/// Adds the stream's keys to state: every control's linear value or switch under its channel, the
/// region, envelope and seed, the place of a scan that stands, the recorded take, the sample's
/// reference, and what live input heard as FLAC, exact to 24 bits of its loudest frame. Playing and
/// armed are not kept. Ends a recording without points, see ScrubRecorder. MAIN.
void saveStreamState(MOK_SCRUB_GRANULATOR& stream, PropertyDictionary& state);

/// Moves every control that state has a value for and that presets move, handlers included, and
/// loads the sample that it names through loader; behind LIVE or a captured sound it waits there. A
/// missing key keeps what is there; a wrong type is ignored with a log line; values are clamped. A
/// missing take is forgotten; a captured sound that cannot be read is left out with a log line.
/// MAIN.
void restoreStreamState(MOK_SCRUB_GRANULATOR& stream, SampleLoader& loader, PropertyReader& state);

} // namespace zephyra
