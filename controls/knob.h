// MOK_KNOB: a continuous control, one linear value between a minimum and a maximum.
#pragma once

#include "controls/control.h"

#include <optional>
#include <string>

namespace zephyra {

class NotificationCenter;
class RandomSource;

/// How a drag turns a knob.
enum InteractionStyle : int {
    kRotary = 0,     ///< the value follows the angle between centre and touch
    kHorizontal = 1, ///< to the right increases
    kVertical = 2,   ///< upwards increases
    kDiagonal = 3,   ///< both
};

/// All arithmetic is in single precision except where powers are taken. Touches come from a screen
/// as begin, continue and end. MAIN.
class MOK_KNOB : public Control {
public:
    /// The notice that chooses every knob's interaction style; its object is an int, the index
    /// chosen.
    static constexpr const char* kInteractionStyleNotice = "InteractionStyle";

    explicit MOK_KNOB(std::string key = {});
    ~MOK_KNOB() override;

    float value() const noexcept { return _value; }
    /// Clamped to the range; what is not finite is refused. Sends nothing.
    void setValue(float v);
    /// The same; animated is for screens, which may let the pointer travel.
    void setValue_animated(float v, bool animated);

    float minimumValue() const noexcept { return _minimumValue; }
    float maximumValue() const noexcept { return _maximumValue; }
    float defaultValue() const noexcept { return _defaultValue; }
    /// Both and their difference finite, minimum below maximum, else nothing changes. The value is
    /// clamped into it.
    void setRange(float minimum, float maximum);
    /// In displayed units, also outside the range (a reset clamps it); one that is not finite is
    /// refused.
    void setDefaultValue(float displayed);

    float valueNorm() const; ///< (value - min) / (max - min)
    void setValueNorm(float n);
    float angleForValue(float v) const; ///< degrees, 0 in the middle of the range
    float valueForAngle(float a) const;
    float clampAngle(float a) const; ///< to -MaxAngle .. MaxAngle

    /// The value as people read and type it: curved where the knob is.
    virtual float displayedValue() const { return value(); }
    virtual void setDisplayedValue(float displayed) { setValue(displayed); }

    /// What modulation calls: moves the value towards target (held between rangeMin and rangeMax,
    /// either of which may be the larger) as gravity lets it in so many seconds, see gravityStep();
    /// a knob outside the range comes into it the same way. Redraws go by needsDisplayCount, at
    /// whatever rate a screen reads it. Sends nothing; refuses what is not finite. True once there
    /// is nothing left to go.
    bool setValueWithAppropriateGraphicsRefreshInterval_rangeMin_rangeMax_gravity(
        float target, float rangeMin, float rangeMax, float gravity, double seconds);

    /// A random position, then all control events. Nothing unless isRandomizable.
    void genRandomic(RandomSource& random);
    /// The default, raised to the minimum when below it, then all control events and skin colour 0.
    /// Nothing unless isDefaultResettable.
    void resetsDefault();

    /// 0 to 3; a slider takes 1 for 0. Others are ignored.
    void setKnobInteractionStyle(int style);
    /// Follows kInteractionStyleNotice of center, which must outlive this, until destroyed or told
    /// to follow another one. Notices whose object is no int are ignored.
    void observeInteractionStyle(NotificationCenter& center);

    /// The text of the value label: displayed value and postfix.
    virtual std::string updateLabel() const { return labelText(double{displayedValue()}); }

    /// Where the knob is drawn: centre for rotary touches, in the points that touches come in.
    void setCenter(Point center) { center_ = center; }
    /// The value that a drag to p means; sets a slider's style to horizontal first. The present
    /// value where the style is rotary, which drags do not turn.
    float valueForPosition(Point p);
    /// Rotary: the angle of p around the centre, degrees clockwise from straight up, -180..180;
    /// nothing closer to the centre than MinDistanceSquared.
    std::optional<float> angleBetweenCenterAndPoint(Point p) const;

    /// A touch's life. begin sends touch-down; continue moves the value and, when it changed and
    /// _continuous is set, sends value-changed; end does the same unless the finger lies where it
    /// was, then sends value-changed if it was held back, then touch-up-inside; cancel sends
    /// value-changed if it was held back, then touch-cancel. Ignored while interaction is off, but
    /// a drag under way is cancelled by its end; continue, end and cancel are ignored without a
    /// begin. A point that is not finite begins and moves nothing.
    void beginTracking(Point p);
    void continueTracking(Point p);
    void endTracking(Point p);
    void cancelTracking();
    bool isTracking() const noexcept { return tracking_; }

    float MaxAngle = 180.0f; ///< half the sweep, degrees
    float MinDistanceSquared =
        16.0f;                   ///< square points around the centre that rotary touches ignore
    float _scalingFactor = 1.0f; ///< degrees per point of drag
    int _interactionStyle = kRotary;
    bool isSlider = false;     ///< drawn and handled as a slider
    bool _continuous = true;   ///< value-changed while dragging, not only at the end
    int _precision = 2;        ///< decimals in the label; below 1 it is truncated to an integer
    std::string _postfix;      ///< unit behind the number
    int currentColorIndex = 0; ///< of the skin
    double _sliderHandleWidth = 10.0; ///< points; 14 on a tablet
    double _handleWidthHalf() const noexcept { return _sliderHandleWidth / 2; }

protected:
    /// How a reset applies the default, which is in displayed units.
    virtual void applyDefault(float displayed) { setValue_animated(displayed, true); }
    /// v, which is inside the range, snapped to the knob's steps; v itself unless it has steps.
    virtual float quantized(float v) const { return v; }
    /// "%d %@" or "%.*f %@" of number.
    std::string labelText(double number) const;

private:
    float angleForPosition(Point p);
    std::optional<float> rotaryAngle(Point p);
    bool moveTo(Point p);
    void handleTouch(Point p);
    void tellHeldBack();

    float _minimumValue = 0.0f;
    float _maximumValue = 1.0f;
    float _defaultValue = 0.5f;
    float _value = 0.5f;
    double followed_ = 0.0; // on the way to a target, between the values that the knob can take
    float _angle = 0.0f;    // degrees; between two steps of the value while a drag is there
    Point _touchOrigin;     // what the next touch is measured from: the last one that was handled
    Point center_;
    int beyond_ = 0; // rotary: the finger passed the bottom behind the minimum (-1), maximum (1)
    bool tracking_ = false;
    bool heldBack_ = false; // a change that no event has told yet
    NotificationCenter* notifications_ = nullptr;
    std::uint64_t styleToken_ = 0;
};

} // namespace zephyra
