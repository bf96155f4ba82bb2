#include "controls/key_touches.h"

#include <algorithm>

namespace zephyra {

KeyTouches::Touch* KeyTouches::find(TouchId finger) {
    for (Touch& touch : touches_)
        if (touch.isFinger() && touch.finger == finger) return &touch;
    return nullptr;
}

void KeyTouches::begin(TouchId finger, int key, float amplitude) {
    touches_.push_back({finger, nullptr, false, key, amplitude});
}

void KeyTouches::move(TouchId finger, int key, float amplitude) {
    Touch* const touch = find(finger);
    if (!touch || touch->key == key) return;
    touch->key = key;
    touch->amplitude = amplitude;
}

void KeyTouches::end(TouchId finger) {
    std::erase_if(touches_,
                  [&](const Touch& touch) { return touch.isFinger() && touch.finger == finger; });
}

void KeyTouches::lock(TouchId finger) {
    const Touch* const locked = find(finger);
    if (!locked) return;
    std::erase_if(touches_, [key = locked->key](const Touch& touch) {
        return touch.locked && touch.key == key;
    });
    find(finger)->locked = true;
}

void KeyTouches::hold(const void* holder, int key, float amplitude) {
    std::erase_if(touches_, [&](const Touch& touch) { return touch.holder == holder; });
    if (key >= 0) touches_.push_back({0, holder, false, key, amplitude});
}

void KeyTouches::unlock() {
    std::erase_if(touches_, [](const Touch& touch) { return touch.locked; });
}

void KeyTouches::letGo(int key) {
    std::erase_if(touches_,
                  [&](const Touch& touch) { return touch.key == key && !touch.isFinger(); });
}

float KeyTouches::amplitude(int key) const {
    float strongest = 0.0f;
    for (const Touch& touch : touches_)
        if (touch.key == key) strongest = std::max(strongest, touch.amplitude);
    return strongest;
}

} // namespace zephyra
