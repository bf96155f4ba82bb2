#include "modulation/control_mover.h"

#include "controls/gravity.h"
#include "controls/knob.h"
#include "controls/mok_keyboard.h"
#include "controls/pad.h"
#include "controls/scan_target.h"
#include "modulation/lfo.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace zephyra {

namespace {

class KnobMover final : public ControlMover {
public:
    explicit KnobMover(MOK_KNOB& knob) : knob_(knob) {}

    float position() const override { return knob_.valueNorm(); }
    float value() const override { return knob_.value(); }
    void setValue(float value) override {
        if (value == knob_.value()) return;
        knob_.setValue(value);
        knob_.sendEventValueChanged();
    }
    bool isHeld() const override { return knob_.isTracking(); }
    bool follow(float place, const WidgetWrapper& bond, double seconds) override {
        const bool there =
            knob_.setValueWithAppropriateGraphicsRefreshInterval_rangeMin_rangeMax_gravity(
                valueAt(place), valueAt(bond.minRange()), valueAt(bond.maxRange()), bond.gravity(),
                seconds);
        knob_.sendEventValueChanged();
        return there;
    }

private:
    float valueAt(float place) const {
        return knob_.minimumValue() + place * (knob_.maximumValue() - knob_.minimumValue());
    }

    MOK_KNOB& knob_;
};

/// For controls that know nothing of gravity: follows by itself and sets the place reached.
class PlaceMover : public ControlMover {
public:
    bool follow(float place, const WidgetWrapper& bond, double seconds) override {
        const double reached = gravityStep(followed_.value_or(double{position()}), double{place},
                                           double{bond.gravity()}, seconds, kGravityNear);
        followed_ = reached;
        moveTo(static_cast<float>(reached)); // whoever hears of it may let go
        return reached == double{place};
    }
    void letGo() override { followed_.reset(); }

protected:
    virtual void moveTo(float place) = 0;

private:
    std::optional<double> followed_; // while under way
};

class ScanMover final : public PlaceMover {
public:
    explicit ScanMover(ScanTarget& scan) : scan_(scan) {}

    float position() const override { return scan_.scanPosition(); }
    void setValue(float value) override { scan_.driveScan(value, 0.0); }
    bool isHeld() const override { return scan_.isHeld(); }

protected:
    void moveTo(float place) override {
        constexpr double kHold = 1.5 * kLfoTick; // seconds
        scan_.driveScan(place, kHold);
    }

private:
    ScanTarget& scan_;
};

class PadMover final : public PlaceMover {
public:
    explicit PadMover(MOK_PAD& pad) : pad_(pad) {}

    float position() const override { return pad_.yValue(); }
    bool isHeld() const override { return pad_.touchState != 0; }

protected:
    void moveTo(float place) override {
        pad_.setYValue(place);
        pad_.sendEventValueChanged();
    }

private:
    MOK_PAD& pad_;
};

class KeyboardMover final : public PlaceMover {
public:
    explicit KeyboardMover(MOK_Keyboard& keyboard) : keyboard_(keyboard) {}
    ~KeyboardMover() override { keyboard_.releaseKey(this); }

    float position() const override { return place_; }
    void letGo() override {
        PlaceMover::letGo();
        keyboard_.releaseKey(this);
    }

protected:
    void moveTo(float place) override {
        constexpr float kAmplitude = 0.8f; // a scrub has no touch strength
        constexpr int kKeys = MOK_Keyboard::_stop;
        const int key = std::clamp(static_cast<int>(place * float{kKeys}), 0, kKeys - 1);
        place_ = place;
        keyboard_.holdKey(this, key, kAmplitude);
    }

private:
    MOK_Keyboard& keyboard_;
    float place_ = 0.0f; // the last one; a keyboard that nobody plays stands nowhere
};

} // namespace

float placeInRange(double v, const WidgetWrapper& bond) {
    const double min = double{bond.minRange()}, max = double{bond.maxRange()};
    return static_cast<float>(min + std::abs(v) * (max - min));
}

double partOfRange(float place, const WidgetWrapper& bond) {
    const double min = double{bond.minRange()}, max = double{bond.maxRange()};
    if (min == max) return 0.0;
    return std::clamp((double{place} - min) / (max - min), 0.0, 1.0);
}

std::unique_ptr<ControlMover> makeKnobMover(MOK_KNOB& knob) {
    return std::make_unique<KnobMover>(knob);
}

std::unique_ptr<ControlMover> makeScanMover(ScanTarget& scan) {
    return std::make_unique<ScanMover>(scan);
}

std::unique_ptr<ControlMover> makePadMover(MOK_PAD& pad) {
    return std::make_unique<PadMover>(pad);
}

std::unique_ptr<ControlMover> makeKeyboardMover(MOK_Keyboard& keyboard) {
    return std::make_unique<KeyboardMover>(keyboard);
}

std::unique_ptr<ControlMover> makeMover(Control& control) {
    if (auto* const knob = dynamic_cast<MOK_KNOB*>(&control)) return makeKnobMover(*knob);
    if (auto* const scan = dynamic_cast<ScanTarget*>(&control)) return makeScanMover(*scan);
    return nullptr;
}

} // namespace zephyra
