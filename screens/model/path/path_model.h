// PathModel: what the path shows, copied out of the instance once a frame.
#pragma once

#include "screens/model/path/knob_face.h"
#include "screens/model/path/path_table.h"
#include "screens/model/screen_source.h"

#include <array>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace zephyra {

/// Who knows the grains that sound now. Message thread.
class SoundingVoices {
public:
    virtual ~SoundingVoices() = default;
    /// The transposition of each, until the next frame; one that is not finite counts as 0.
    virtual std::span<const float> semitones() const = 0;
    /// Whether one was dropped in the last 300 ms for want of a voice.
    virtual bool droppedRecently() const = 0;
};

/// The voices of a stream.
inline constexpr int kVoices = 24;

/// What stands in the voices' cell.
struct VoicesFace {
    std::vector<float> semitones; ///< kVoices at most
    bool dropped = false;
    bool operator==(const VoicesFace&) const = default;
    std::string name() const; ///< "17 grains"
};

/// What stands in the cell that keeps what LIVE heard.
struct KeepFace {
    int seconds = 0; ///< that would be kept; 0: there are none
    bool isSaving = false;
    bool isAvailable() const { return seconds > 0 && !isSaving; }
    std::string name() const; ///< "Keep 9 s"
    bool operator==(const KeepFace&) const = default;
};

/// Message thread.
class PathModel final : public ScreenPart {
public:
    void read(AudioUnitViewController& view, const FrameTime& time) override;

    /// From now on the grains are known; null: they are counted, and have the pitch control's
    /// colour. voices outlives this.
    void setVoices(const SoundingVoices* voices) { sounding_ = voices; }

    /// Of a knob that is there; others keep what they were.
    const KnobFace& face(ControlId id) const { return faces_[static_cast<std::size_t>(id)]; }
    bool isOn(ControlId toggle) const { return isOn_[static_cast<std::size_t>(toggle)]; }
    PathSync sync() const {
        return {.scan = isOn(ControlId::scanSync), .echo = isOn(ControlId::echoSync)};
    }
    std::size_t envelope() const { return envelope_; }
    const VoicesFace& voices() const { return voices_; }
    const KeepFace& keep() const { return keep_; }

private:
    void readVoices(AudioUnitViewController& view, const FrameTime& time);
    void readKeep(AudioUnitViewController& view);

    const SoundingVoices* sounding_ = nullptr;
    std::array<KnobFace, kControlCount> faces_;
    std::array<KnobMemory, kControlCount> memories_;
    std::array<bool, kControlCount> isOn_{};
    std::size_t envelope_ = 0;
    VoicesFace voices_;
    KeepFace keep_;
    std::uint64_t sounded_ = 0, rendered_ = 0, dropped_ = 0; // of the engine, as last read
    double droppedUntil_ = 0.0;
};

} // namespace zephyra
