// saveStreamState and restoreStreamState: everything of a stream that a preset keeps.
#pragma once

#include "platform/lists/property_reader.h"
#include "stream/sample_loader.h"
#include "stream/stream_controller.h"

namespace zephyra {

/// What a state is made for.
enum class StateUse {
    session,  ///< a host's project: sounds go along, so that they cannot get lost
    snapshot, ///< a preset of a bank, which stays small and moves between machines
    edit,     ///< what undo compares: as a session; a recording that waits for points goes on
};

/// What a missing key means to restoreStreamState.
enum class StateScope {
    whole, ///< state speaks of everything: a missing take is forgotten
    part,  ///< it names what changes and nothing else does, controls that presets skip included
};

/// Adds the stream's keys to state: every control's linear value or switch under its channel, the
/// region, envelope and seed, the place of a scan that stands, the recorded take and the sample's
/// reference. A session also keeps the sample's sound, if it is short enough (embedSeconds) or no
/// file is known that holds it, and what live input heard, both as FLAC, exact to 24 bits of the
/// loudest frame: that is what StateSounds adds. A snapshot names a sample below the shared or the
/// resource folder by its file name and relative path only. An edit has a sample's sound only where
/// no file holds it, shared with the stream. Playing and armed are not kept. Ends a recording
/// without points, see ScrubRecorder, but for an edit. MAIN.
void saveStreamState(MOK_SCRUB_GRANULATOR& stream, PropertyDictionary& state,
                     StateUse use = StateUse::session);

/// Moves every control that state has a value for and that presets move, handlers included, and
/// loads the sample that it names or embeds through loader; behind LIVE or a captured sound it
/// waits there. A missing key keeps what is there, as does one of the wrong type; values are
/// clamped. A missing take is forgotten; a captured sound that cannot be read is left out. What
/// could not be taken becomes a finding of state's. True when a sample is being loaded: ended is
/// called once it is there, or known to be missing. MAIN.
bool restoreStreamState(MOK_SCRUB_GRANULATOR& stream, SampleLoader& loader, PropertyReader& state,
                        SampleLoader::Ended ended = {}, StateScope scope = StateScope::whole);

} // namespace zephyra
