// PresetOptions: which presets a render plays, which it saves, and whether it is one of many, as
// asked for on the command line.
#pragma once

#include "platform/text/result.h"

#include <filesystem>
#include <optional>
#include <string>

namespace CLI {
class App;
}

namespace zephyra {

/// The options as they were typed.
struct TypedPresetOptions {
    std::optional<std::string> bank, preset, saveBank, savePreset, outDir;
    bool yes = false;
};

/// A preset as it was asked for.
struct NamedPreset {
    std::string bank, preset; ///< see preset_names.h for what they may be
};

/// A preset that is to be made of what a render starts from.
struct SavedPreset {
    std::string bank; ///< file name
    std::string name;
    bool replaces = false; ///< one of that name, if there is one
};

struct PresetOptions {
    std::optional<NamedPreset> played = {};
    std::optional<SavedPreset> saved = {};
    std::optional<std::filesystem::path> outDir = {}; ///< many renders
};

inline constexpr const char* kAllPresets = "*";

/// Declares the options on command; typed must outlive it.
void declarePresetOptions(CLI::App& command, TypedPresetOptions& typed);

/// Checks every value. A failure is a wrong usage that names the option.
Result<PresetOptions> checkPresetOptions(const TypedPresetOptions& typed);

} // namespace zephyra
