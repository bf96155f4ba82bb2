// StreamSettings: what a stream asks of the view that it belongs to.
#pragma once

#include "controls/control_events.h"

namespace zephyra {

class MOK_KNOB;

/// Implemented by whoever shows the stream and speaks for it to the host. MAIN.
class StreamSettings {
public:
    virtual ~StreamSettings() = default;
    virtual double fadeInTime() const = 0;  ///< seconds, from 0 up
    virtual double fadeOutTime() const = 0; ///< seconds, from 0 up

    /// The button's state changed and the host must see it; the last one also when a file took the
    /// place of a live sound.
    virtual void AUv3_Parameter_playToggle_from_DSP() = 0;
    virtual void AUv3_Parameter_freezeToggle_from_DSP() = 0;
    virtual void AUv3_Parameter_LiveToggle_from_DSP() = 0;

    /// A hand moves the scan: touchDown as it begins, valueChanged at each move, touchUpInside as
    /// it ends. Whatever else moves the scan is not told.
    virtual void AUv3_Parameter_scrub_from_DSP(ControlEvents event) = 0;

    /// A key has put played to its note: adds what a pitch wheel bends it by. Sends nothing.
    virtual void bendNote(MOK_KNOB& /*played*/) {}
};

} // namespace zephyra
