// RenderRequest: a render as plain data, all that decides its sound and where it goes.
#pragma once

#include "engine/grain_taps.h"
#include "platform/files/streamed_files.h"
#include "presets/preset_choice.h"
#include "presets/preset_saving.h"
#include "rendering/host_request.h"
#include "rendering/motion_request.h"
#include "rendering/output/output_gain.h"
#include "rendering/output/output_type.h"
#include "stream/control_setting.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <vector>

namespace zephyra {

/// A setting that takes effect at a time of the output.
struct TimedSetting {
    double seconds; ///< from 0 up
    ControlSetting setting;
};

inline constexpr double kMostSeconds = 24 * 3600.0; // more is a slip of the finger
inline constexpr int kDefaultBlockFrames = 512;
inline constexpr int kMostBlockFrames = 65536;
inline constexpr double kLowestRate = 8000.0, kHighestRate = 384000.0; // Hz

/// How the file ends.
enum class RenderEnding { faded, cut };

struct RenderRequest {
    std::filesystem::path input = {};      ///< empty: the preset's sample is what is played
    std::filesystem::path output = {};     ///< ByteStream::isNamedBy, or a file's name
    OutputType type = defaultOutputType(); ///< of output, whatever its name
    SampleFormat format = SampleFormat::shorts;
    RenderEnding ending = RenderEnding::faded;
    bool ringsOut = false; ///< grains and echo that sound at the end go on by themselves
    std::optional<OutputGain> gain = {}; ///< of the finished sound
    std::optional<std::filesystem::path> picture = {};
    std::optional<double> seconds = {};     ///< none: the source's own length, and the echo's tail
    std::optional<double> sampleRate = {};  ///< Hz; none: the source's own
    int blockFrames = kDefaultBlockFrames;  ///< per render call, 1 to kMostBlockFrames
    std::optional<std::uint32_t> seed = {}; ///< from 1 up; none: the state's, else the clock's
    std::vector<ControlSetting> settings = {};
    std::vector<TimedSetting> timedSettings = {}; ///< by time
    std::optional<std::size_t> envelope = {};     ///< position in the menu
    bool steadyLevel = false;                     ///< as loud whatever density and length are
    std::optional<GrainQuality> quality = {};     ///< none: as the state says, else classic
    std::optional<float> start = {}, end = {};    ///< fractions of the source
    bool live = false; ///< an effect's grains come from input and, unless host.type is given, are
                       ///< heard without it
    HostRequest host = {};
    MotionRequest motion = {};
    std::optional<PresetChoice> preset = {};
    std::optional<SavedPreset> savedPreset = {};
    /// What those of its files brought that can be read only once; never null.
    std::shared_ptr<const StreamedFiles> streams = std::make_shared<StreamedFiles>();

    /// One of component_type: what the host was asked for, else what live or the preset needs.
    FourCharCode componentType() const;
    bool isInstrument() const { return componentType() == component_type::instrument; }
    /// Whether nothing but LIVE in the preset makes it an effect.
    bool isEffectOfPreset() const;
};

/// Inserts setting by its time, behind those of the same time.
void insertByTime(std::vector<TimedSetting>& settings, const TimedSetting& setting);

} // namespace zephyra
