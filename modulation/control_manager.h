// ControlManager: what the audio unit asks of the manager of modulation sources.
#pragma once

namespace zephyra {

class LFO_WIDGETS_MAPPING;

/// May be absent: then nothing is modulated. MAIN.
class ControlManager {
public:
    virtual ~ControlManager() = default;
    /// The table that all LFOs are routed by; it lives as long as the manager.
    virtual LFO_WIDGETS_MAPPING* getLfoWidgetsMapping() = 0;
    /// The host's tempo in beats per minute, whenever it changes.
    virtual void syncStateDidChangedWithBPM(double bpm) = 0;
};

} // namespace zephyra
