// FolderRow: which folder may use which, as data for the checks of the tree.
#pragma once

#include <string_view>
#include <vector>

namespace zephyra {

/// Where a folder may include headers that are neither ours nor the standard library's.
enum class ThirdParty { Nowhere, InSources, Everywhere };

/// One room of the house, a folder or a folder in one: arrows point only from it to those in
/// mayUse. A name stands for the rooms below it as well, unless they are apart.
struct FolderRow {
    std::string_view folder; ///< from the root; a file belongs to the longest that holds it
    std::vector<std::string_view> mayUse;
    ThirdParty thirdParty = ThirdParty::Nowhere;
    bool apart = false; ///< the name of the folder around it does not stand for it
};

/// The house, from the bottom up. A folder with sources that has no row is an error.
inline const std::vector<FolderRow> kHouse = {
    {"platform/text", {}, ThirdParty::InSources},
    {"platform/threads", {"platform/text"}, ThirdParty::InSources},
    {"platform/files", {"platform/text"}, ThirdParty::InSources},
    {"platform/lists", {"platform/files", "platform/text"}, ThirdParty::InSources},
    {"platform/sound", {"platform/files", "platform/text"}, ThirdParty::InSources},
    {"platform/audio_unit",
     {"platform/sound", "platform/lists", "platform/threads", "platform/text"},
     ThirdParty::InSources},
    {"platform/aac_module", {"platform/sound"}, ThirdParty::Everywhere, true}, // loaded by name
    {"platform",
     {"platform/audio_unit", "platform/sound", "platform/lists", "platform/files",
      "platform/threads", "platform/text"},
     ThirdParty::InSources},
    {"effects", {"platform"}},
    {"engine", {"effects", "platform"}},
    {"controls", {"platform"}},
    {"stream", {"engine", "effects", "controls", "platform"}},
    {"modulation", {"controls", "platform"}},
    {"library", {"platform"}},
    {"audiounit", {"engine", "effects", "stream", "modulation", "controls", "library", "platform"}},
    {"main_view",
     {"audiounit", "library", "modulation", "stream", "controls", "engine", "effects", "platform"}},
    {"hosting",
     {"audiounit", "main_view", "library", "stream", "controls", "engine", "effects", "platform"}},
    {"presets", {"main_view", "library", "stream", "controls", "engine", "platform"}},
    {"pictures", {"controls", "engine", "platform"}, ThirdParty::InSources},
    {"pictures/cairo",
     {"pictures", "controls", "engine", "platform"},
     ThirdParty::Everywhere,
     true},
    {"rendering/output", {"stream", "platform"}},
    {"rendering/events", {"pictures", "audiounit", "stream", "platform"}},
    {"rendering",
     {"rendering/events", "rendering/output", "pictures", "presets", "hosting", "main_view",
      "audiounit", "library", "modulation", "stream", "controls", "engine", "effects", "platform"}},
    {"cli/terminal", {"platform"}, ThirdParty::Everywhere},
    {"cli/options",
     {"rendering", "presets", "library", "audiounit", "engine", "platform"},
     ThirdParty::InSources},
    {"cli/render",
     {"cli/terminal", "rendering", "pictures/cairo", "pictures", "presets", "library", "engine",
      "platform"},
     ThirdParty::InSources},
    {"cli/batch",
     {"cli/render", "cli/options", "cli/terminal", "rendering", "pictures/cairo", "pictures",
      "presets", "library", "platform"},
     ThirdParty::InSources},
    {"cli/commands",
     {"cli/batch", "cli/render", "cli/options", "cli/terminal", "rendering", "pictures/cairo",
      "pictures", "presets", "main_view", "audiounit", "library", "controls", "engine", "platform"},
     ThirdParty::InSources},
    {"cli",
     {"cli/commands", "cli/batch", "cli/render", "cli/options", "cli/terminal", "rendering",
      "pictures/cairo", "pictures", "presets", "hosting", "main_view", "audiounit", "library",
      "modulation", "stream", "controls", "engine", "effects", "platform"},
     ThirdParty::Everywhere},
    {"cli/pages", {"cli", "rendering", "audiounit", "engine", "platform"}, ThirdParty::Everywhere},
    {"screens/model", // what a window shows and what hands do, without a window
     {"pictures", "presets", "hosting", "main_view", "audiounit", "library", "modulation", "stream",
      "controls", "engine", "effects", "platform"},
     ThirdParty::InSources},
    {"screens/draw", {"screens/model", "controls", "platform"}, ThirdParty::Everywhere},
    {"screens",
     {"screens/draw", "screens/model", "rendering", "pictures", "presets", "hosting", "main_view",
      "audiounit", "library", "modulation", "stream", "controls", "engine", "effects", "platform"},
     ThirdParty::Everywhere},
    {"plugin",
     {"screens", "rendering", "pictures", "presets", "hosting", "main_view", "audiounit",
      "platform"},
     ThirdParty::Everywhere},
    {"resources", {}, ThirdParty::InSources}, // the generator of the built-in samples
};

/// Folders that use any other: what stands around the house.
inline const std::vector<std::string_view> kAround = {"tests", "bench", "fuzz"};

/// The compiler's own vector instructions, which a folder without third-party headers may include
/// besides the standard library, whose names have neither dot nor folder.
inline constexpr std::string_view kInstructionHeaders =
    " immintrin.h xmmintrin.h emmintrin.h arm_neon.h ";

} // namespace zephyra
