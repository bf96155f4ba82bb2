// KeyRect: the layout of piano keys and its hit test, which key a point touches.
#pragma once

#include "controls/control.h"

#include <span>

namespace zephyra {

/// Points. The right and lower edges belong to what lies beyond.
struct KeyRect {
    double x = 0.0, y = 0.0, width = 0.0, height = 0.0;

    bool contains(Point p) const {
        return p.x >= x && p.x < x + width && p.y >= y && p.y < y + height;
    }
};

/// Key 0 is a C. Any thread.
bool isBlackKey(int key);

/// Lays the keys out from key 0 at x = 0: white ones side by side, each black one centred on the
/// boundary between its neighbours. whiteWidth and viewHeight in points. Any thread.
void layOutKeys(std::span<KeyRect> keys, double whiteWidth, double viewHeight);

/// The key at p, a black one before the white ones below it; -1 for none. Any thread.
int keyAt(std::span<const KeyRect> keys, Point p);

/// How strongly a finger at p plays the key: 0.2 at the far edge rising to 1 at the front (lower)
/// one, as a real key yields more easily the further from its hinge it is struck. Any thread.
float touchAmplitude(const KeyRect& key, Point p);

} // namespace zephyra
