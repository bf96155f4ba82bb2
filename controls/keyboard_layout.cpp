#include "controls/keyboard_layout.h"

#include <algorithm>

namespace zephyra {

namespace {

constexpr double kBlackWidth = 0.55;  // of a white key's
constexpr double kBlackHeight = 0.58; // of a white key's
constexpr double kBottomLine = 0.5;   // points of the view that the keys leave free
constexpr float kSoftest = 0.2f;

} // namespace

bool isBlackKey(int key) {
    const int degree = key % 12;
    return degree == 1 || degree == 3 || degree == 6 || degree == 8 || degree == 10;
}

void layOutKeys(std::span<KeyRect> keys, double whiteWidth, double viewHeight) {
    const double height = viewHeight - kBottomLine;
    const double blackWidth = kBlackWidth * whiteWidth;
    int whites = 0; // left of the key
    for (int key = 0; KeyRect & rect : keys) {
        const double boundary = whites * whiteWidth;
        if (isBlackKey(key++)) {
            rect = {boundary - blackWidth / 2, 0.0, blackWidth, kBlackHeight * height};
        } else {
            rect = {boundary, 0.0, whiteWidth, height};
            ++whites;
        }
    }
}

int keyAt(std::span<const KeyRect> keys, Point p) {
    int found = -1;
    for (int key = 0; const KeyRect& rect : keys) {
        if (rect.contains(p)) {
            found = key;
            if (isBlackKey(key)) return found;
        }
        ++key;
    }
    return found;
}

float touchAmplitude(const KeyRect& key, Point p) {
    const double depth = key.height > 0.0 ? std::clamp((p.y - key.y) / key.height, 0.0, 1.0) : 1.0;
    return kSoftest + (1.0f - kSoftest) * static_cast<float>(depth);
}

} // namespace zephyra
