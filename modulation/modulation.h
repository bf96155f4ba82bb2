// Modulation: what the audio unit asks of whatever moves the controls by itself.
#pragma once

namespace zephyra {

class LFO_WIDGETS_MAPPING;

/// May be absent: then nothing is modulated. MAIN.
class Modulation {
public:
    virtual ~Modulation() = default;
    /// The table that all LFOs are routed by; it lives as long as this does.
    virtual LFO_WIDGETS_MAPPING* getLfoWidgetsMapping() = 0;
    /// The host's tempo in beats per minute, whenever it changes.
    virtual void syncStateDidChangedWithBPM(double bpm) = 0;
};

} // namespace zephyra
