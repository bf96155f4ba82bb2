// ScrubRecorder: what a stream asks of the hand that scrubs it and of the takes that hand left.
#pragma once

namespace zephyra {

/// May be absent: the transport works without. MAIN.
class ScrubRecorder {
public:
    virtual ~ScrubRecorder() = default;
    /// Moves the picture of the scan over a fade of so many seconds.
    virtual void scrubAnimation(double seconds) = 0;
    /// Draws the scan at a normalised position, 0..1.
    virtual void updateGraphicallyScrubPosition(double position) = 0;
    /// Ends a press-and-hold that holds the scan.
    virtual void longPressFirstFingerGesture() = 0;
    /// Plays the recorded take.
    virtual void ____playScrubRec() = 0;
};

} // namespace zephyra
