#include "modulation/keyboard_mover.h"

#include <algorithm>

namespace zephyra {

void KeyboardMover::moveTo(float place) {
    constexpr int kKeys = MOK_Keyboard::_stop;
    const int key = std::clamp(static_cast<int>(place * float{kKeys}), 0, kKeys - 1);
    place_ = place;
    keyboard_.holdKey(this, key, kAmplitude);
}

void KeyboardMover::letGo() {
    PlaceMover::letGo();
    keyboard_.releaseKey(this);
}

} // namespace zephyra
