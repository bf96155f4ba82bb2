// MOK_PAD: a surface whose two axes are two values, across a range of notes.
#pragma once

#include "controls/forwarded_scrub_reference.h"
#include "controls/touch_surface.h"
#include "platform/lists/property_list.h"

#include <optional>
#include <string>

namespace zephyra {

class Log;
class UserDefaults;

/// The first finger moves it; value-changed is sent on each change that a finger makes, touch-down
/// and touch-up-inside or touch-cancel around them. Setters send nothing. MAIN.
class MOK_PAD final : public TouchSurface, public ForwardedScrubReference {
public:
    explicit MOK_PAD(std::string key = {}) : TouchSurface(std::move(key)) {}

    /// Held to 0..1; what is not finite is refused. x rises to the right, y upwards.
    void setXValue(float x);
    void setYValue(float y);
    float xValue() const noexcept { return xValue_; }
    float yValue() const noexcept { return yValue_; }
    /// A touch's value is its fraction of the axis to this power; not above 0 or not finite: 1.
    float xValueExp = 1.0f, yValueExp = 1.0f;

    /// Truncated and held to 0..127. A range that then ends above the last note loses an octave if
    /// that is enough to let it fit, else keeps it. Not finite: refused.
    void setBaseNote(float note);
    /// Octaves across the pad, truncated and held to 1..10; a range that would end above the last
    /// note is refused, and what is not finite.
    void setOctNum(float octaves);
    float baseNote() const noexcept { return _baseNote; }
    float octNum() const noexcept { return _octNum; }
    void incrBaseNote() { setBaseNote(_baseNote + 12.0f); }
    void decrBaseNote() { setBaseNote(_baseNote - 12.0f); }
    void incrOctNum() { setOctNum(_octNum + 1.0f); }
    void decrOctNum() { setOctNum(_octNum - 1.0f); }

    /// The MIDI note that x means, 0..127: between notes too, unless _diatonics holds it to the
    /// nearest degree (of two the lower) of the major scale on the base note.
    double note() const;
    bool _diatonics = false;

    /// [octaves, base note], with saveLoad_XY [.., x, y].
    PropertyArray getState() const;
    /// Whatever the pad held before, a state that it gave comes back the same. One that is too
    /// short is ignored, so is each value that is no finite number, and is named in the
    /// answer; others are held as the setters do. x and y count only with saveLoad_XY. Sends
    /// nothing.
    StateFindings restoreState(const PropertyArray& state);
    bool saveLoad_XY = false;

    /// Keeps, brings back base note, octaves and, with saveLoad_XY, x and y by channel. Nothing
    /// without a channel or without user defaults.
    void saveAsDefault(Control* sender = nullptr);
    void loadAsDefault(Control* sender = nullptr);
    UserDefaults* userDefaults = nullptr; ///< null, or it outlives this
    Log* log = nullptr; ///< hears of defaults that cannot be; null, or it outlives this

    /// Points; finite and above 0, else ignored.
    void setSize(double width, double height) { setSurface(width, height); }

    // For screens.
    float stepness = 1.0f;
    int animationType = 0;
    int touchState = 0; ///< 1 while a finger moves it, else 0
    std::optional<Color> gridColor, pointColor, labelColor;
    Point labelOffset;

protected:
    void fingerBegan(TouchId touch, Point at, double time) override;
    void fingerMoved(TouchId touch, Point at) override;
    void fingerEnded(TouchId touch, bool cancelled) override;

private:
    void follow(Point at);
    bool fits(float octaves) const; // the range below the last note
    void restoreXY(const std::optional<double>& x, const std::optional<double>& y);

    float xValue_ = 0.5f, yValue_ = 0.5f;
    float _baseNote = 48.0f, _octNum = 2.0f;
    std::optional<TouchId> finger_; // the one that moves it
};

} // namespace zephyra
