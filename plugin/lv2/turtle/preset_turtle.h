// PresetTurtle: the factory's presets as LV2 hosts read them.
#pragma once

#include "hosting/plugin_instance.h"
#include "platform/text/result.h"

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

namespace zephyra {

/// One preset: a file in the bundle and what the manifest says of it.
struct PresetTurtle {
    std::string iri;  ///< by kind and name: hosts keep it in sessions
    std::string file; ///< its name in the bundle
    std::string text; ///< of the file: the whole state, and the ports' values with it
};

/// Those of the banks in the folder, in the programs' order. MAIN; nothing of the user's is read.
/// Fails where there is none, two would have one name, or a state cannot be written.
Result<std::vector<PresetTurtle>> presetTurtles(PluginKind kind,
                                                const std::filesystem::path& resources);

} // namespace zephyra
