// RenderOptions: what `zephyra render` was asked to do.
#pragma once

#include "audiounit/control_text.h"
#include "cli/options/host_options.h"
#include "cli/options/motion_options.h"
#include "cli/options/preset_options.h"
#include "platform/text/result.h"
#include "presets/preset_choice.h"
#include "rendering/output_type.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace zephyra {

/// The options as they were typed.
struct TypedRenderOptions {
    std::vector<std::string> inputs;
    std::optional<std::string> output, seconds, rate, block, seed, envelope, start, end, type;
    std::optional<std::string> picture;
    std::vector<std::string> settings, timedSettings;
    TypedHostOptions host;
    TypedMotionOptions motion;
    TypedPresetOptions presets;
    bool live = false, floats = false, quiet = false, json = false;
};

struct RenderOptions {
    std::filesystem::path input; ///< empty: the preset's sample is what is played
    std::filesystem::path output;
    std::optional<std::filesystem::path> picture;
    OutputType type;
    std::optional<double> seconds;     ///< none: the source's own length, and the echo's tail
    std::optional<double> sampleRate;  ///< Hz; none: the source's own
    int blockFrames;                   ///< frames per render call
    std::optional<std::uint32_t> seed; ///< none: from the clock
    std::vector<ControlSetting> settings;
    std::vector<TimedSetting> timedSettings; ///< by time, and in the order typed at equal times
    std::optional<std::size_t> envelope;     ///< position in the menu
    std::optional<float> start, end;         ///< fractions of the source
    HostOptions host;
    MotionOptions motion;
    std::optional<PresetChoice> preset;
    std::optional<SavedPreset> savedPreset;
    bool isEffectOfPreset; ///< nothing but LIVE in the preset says so
    bool live, floats, quiet, json;
};

inline constexpr double kMostSeconds = 24 * 3600.0; // more is a slip of the finger
inline constexpr int kDefaultBlockFrames = 512;
inline constexpr int kMostBlockFrames = 65536;
inline constexpr double kLowestRate = 8000.0, kHighestRate = 384000.0; // Hz

/// Declares the options of `render` on command; typed is filled while the command line is parsed
/// and must outlive it.
void declareRenderOptions(CLI::App& command, TypedRenderOptions& typed);

/// Whether a state or a preset says what to start from, not both. A failure is a wrong usage.
Result<void> checkOneStart(const TypedRenderOptions& typed);

/// Whether one sound file is named, or none and a preset instead. A failure is a wrong usage.
Result<void> checkOneInput(const TypedRenderOptions& typed);

/// Checks every value for a render of the first INPUT, if there is one, with a preset, if there is
/// one. A failure is a wrong usage; it names the option and what would be right.
Result<RenderOptions> checkRenderOptions(const TypedRenderOptions& typed,
                                         const std::optional<PresetChoice>& preset = {});

/// The extension of files of the type that the options ask for, "wav" where they ask for none.
std::string outputExtension(const TypedRenderOptions& typed);

} // namespace zephyra
