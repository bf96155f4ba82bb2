// KeyboardMover: glides over the keys of a keyboard.
#pragma once

#include "controls/mok_keyboard.h"
#include "modulation/control_mover.h"

namespace zephyra {

/// Holds one key at most, from the first movement until it lets go or ends. MAIN.
class KeyboardMover final : public PlaceMover {
public:
    static constexpr float kAmplitude = 0.8f; ///< of the keys; a scrub has no touch strength

    explicit KeyboardMover(MOK_Keyboard& keyboard) : keyboard_(keyboard) {}
    ~KeyboardMover() override { keyboard_.releaseKey(this); }

    float position() const override { return place_; }
    void letGo() override;

protected:
    void moveTo(float place) override;

private:
    MOK_Keyboard& keyboard_;
    float place_ = 0.0f; // the last one; a keyboard that nobody plays stands nowhere
};

} // namespace zephyra
