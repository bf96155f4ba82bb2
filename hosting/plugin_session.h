// PluginSession: what a plug-in's state keeps beside the system's own, under keys at its top.
#pragma once

#include "hosting/plugin_settings.h"
#include "platform/lists/property_list.h"
#include "platform/lists/state_finding.h"
#include "platform/text/result.h"

#include <cstddef>
#include <optional>

namespace zephyra {

/// The major number grows when an older program would make something else of a state than what was
/// saved, and then refuses it; the minor number when something is added that it may pass over.
inline constexpr int kStateMajor = 1, kStateMinor = 0;

/// Plain data.
struct PluginSession {
    PluginSettings settings{.notesEnd = NotesEnd::goOn}; ///< as they are of a state without them
    std::optional<std::size_t> program;                  ///< chosen last, if any was
};

/// Writes version, settings and program into state. Any thread but RENDER.
void addSession(PropertyDictionary& state, const PluginSession& session);

/// Takes them out of state again, so that what stays is the system's own, and appends what could
/// not be taken to findings. A state without a version is one of the command or of an older
/// program. Fails, and changes nothing, for a version whose major number is greater than ours, and
/// for one that is not "major.minor". Any thread but RENDER.
Result<PluginSession> takeSession(PropertyDictionary& state, StateFindings& findings);

} // namespace zephyra
