// MOK_KNOB_EXP, MOK_KNOB_LOG and MOK_SLIDER_EXP: knobs whose taper is a power curve.
#pragma once

#include "controls/knob.h"

#include <string>

namespace zephyra {

/// min + (max - min) · ((v - min) / (max - min)) ^ exponent; the power in double, the rest in
/// single precision. v is clamped to the range first. Any thread.
float bendInRange(float v, float min, float max, double exponent) noexcept;

/// What the curved knobs share: an exponent, and a default in displayed units. MAIN.
class CurvedKnob : public MOK_KNOB {
public:
    explicit CurvedKnob(std::string key, float stepness);

    /// The curve's exponent; not finite or not above 0 is refused.
    void setStepness(float exponent);
    float stepness() const noexcept { return stepness_; }

protected:
    void applyDefault(float displayed) override { setDisplayedValue(displayed); }

    float bentValue(double exponent) const; ///< the value, bent
    void setBentValue(float v, double exponent);
    double reciprocal() const noexcept { return 1.0 / double{stepness_}; }

private:
    float stepness_ = 2.0f;
};

/// Finer towards the minimum for a stepness above 1. MAIN.
class MOK_KNOB_EXP : public CurvedKnob {
public:
    explicit MOK_KNOB_EXP(std::string key = {}, float stepness = 2.0f)
        : CurvedKnob(std::move(key), stepness) {}

    float valueExp() const { return bentValue(double{stepness()}); }
    void setValueExp(float v) { setBentValue(v, reciprocal()); } ///< not finite is refused
    float displayedValue() const override { return valueExp(); }
    void setDisplayedValue(float displayed) override { setValueExp(displayed); }
};

/// Finer towards the maximum: the mirror of MOK_KNOB_EXP. MAIN.
class MOK_KNOB_LOG : public CurvedKnob {
public:
    explicit MOK_KNOB_LOG(std::string key = {}, float stepness = 2.0f)
        : CurvedKnob(std::move(key), stepness) {}

    float valueLog() const { return bentValue(reciprocal()); }
    void setValueLog(float v) { setBentValue(v, double{stepness()}); } ///< not finite is refused
    float displayedValue() const override { return valueLog(); }
    void setDisplayedValue(float displayed) override { setValueLog(displayed); }
};

/// MOK_KNOB_EXP drawn and dragged as a slider. MAIN.
class MOK_SLIDER_EXP : public MOK_KNOB_EXP {
public:
    explicit MOK_SLIDER_EXP(std::string key = {}, float stepness = 2.0f);
};

} // namespace zephyra
