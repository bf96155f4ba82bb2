// PathModel: what the path shows, copied out of the instance once a frame.
#pragma once

#include "screens/model/path/knob_face.h"
#include "screens/model/path/path_table.h"
#include "screens/model/path/voices_face.h"
#include "screens/model/screen_source.h"
#include "screens/model/slow_tick.h"

#include <array>
#include <string>

namespace zephyra {

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

    /// Where the grains that sound are known; null, as at first, for none. voices outlives this.
    void setVoices(const SoundingVoices* voices) { sounding_ = voices; }

    /// Of a knob that is there; others keep what they were.
    const KnobFace& face(ControlId id) const { return faces_[static_cast<std::size_t>(id)]; }
    bool isOn(ControlId toggle) const { return isOn_[static_cast<std::size_t>(toggle)]; }
    PathSync sync() const {
        return {.scan = isOn(ControlId::scanSync), .echo = isOn(ControlId::echoSync)};
    }
    std::size_t envelope() const { return envelope_; }
    const VoicesFace& voices() const { return voices_.face(); }
    const KeepFace& keep() const { return keep_; }

private:
    void readVoices(const FrameTime& time);
    void readKeep(AudioUnitViewController& view);

    const SoundingVoices* sounding_ = nullptr;
    std::array<KnobFace, kControlCount> faces_;
    std::array<KnobMemory, kControlCount> memories_;
    std::array<bool, kControlCount> isOn_{};
    std::size_t envelope_ = 0;
    VoiceDots voices_;
    SlowTick voicesTick_;
    KeepFace keep_;
};

} // namespace zephyra
