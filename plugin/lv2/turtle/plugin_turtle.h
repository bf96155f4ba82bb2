// pluginTurtle: what an LV2 host reads about a plug-in before it loads it.
#pragma once

#include "hosting/plugin_instance.h"

#include <string>

namespace zephyra {

/// An effect's or an instrument's.
const char* lv2Uri(PluginKind kind);

/// The file's name in the bundle, "effect.ttl".
std::string lv2TurtleFile(PluginKind kind);

/// The plug-in with its ports.
std::string pluginTurtle(PluginKind kind);

} // namespace zephyra
