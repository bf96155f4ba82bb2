// PresetChoice: a preset of the store that a render starts from.
#pragma once

#include "library/bank_folder.h"
#include "platform/lists/property_list.h"
#include "platform/text/result.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace zephyra {

/// A preset as it was asked for.
struct NamedPreset {
    std::optional<std::string> bank; ///< none: the one that has the preset
    std::string preset;              ///< see preset_names.h for what both may be
};

/// Cheap to copy.
struct PresetChoice {
    std::string bank;                                 ///< file name
    std::filesystem::path file;                       ///< of the bank
    std::string key;                                  ///< of its snapshot
    std::string name;                                 ///< for people
    std::shared_ptr<const PropertyDictionary> record; ///< the snapshot
    bool live = false;                                ///< it listens to an input
    bool hasSound = false;                            ///< it names a sample or holds a sound
};

/// The presets that were asked for, in the bank's order. Fails with one line. MAIN.
Result<std::vector<PresetChoice>> choosePresets(BankFolder& banks, const NamedPreset& named);

/// Where the preset's sample may stand: files that a render must not replace. MAIN.
std::vector<std::filesystem::path> sampleFiles(const PresetChoice& preset, const Folders& folders);

} // namespace zephyra
