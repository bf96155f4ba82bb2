// KeyTouches: which keys of a keyboard are held or latched, by what, and at what amplitude.
#pragma once

#include "controls/touch_listener.h"

#include <vector>

namespace zephyra {

/// Keys are held by fingers, by fingers that are gone but left their key locked (latched),
/// and by others in their own name. Key -1 is none. MAIN.
class KeyTouches {
public:
    /// One more finger, on key.
    void begin(TouchId finger, int key, float amplitude);
    /// The finger is on key now; the amplitude counts where it enters another one. Ignored for an
    /// unknown finger.
    void move(TouchId finger, int key, float amplitude);
    void end(TouchId finger);
    /// The finger ends but holds its key, in place of one that did so before.
    void lock(TouchId finger);
    /// holder, not null, holds key from now on, and nothing else.
    void hold(const void* holder, int key, float amplitude);

    /// Lets go of all that locked fingers hold.
    void unlock();
    /// Lets go of key, except for the fingers on it.
    void letGo(int key);
    void clear() { touches_.clear(); }

    /// The strongest amplitude that holds key; 0 when nothing does.
    float amplitude(int key) const;

    /// Brings keys 0 to count - 1 to what holds them: change(key, amplitude) first for those that
    /// go up (amplitude 0), then for those that go down. isDown(key) is how a key is now; one that
    /// stays down is left as it is.
    template <typename IsDown, typename Change>
    void settle(int count, IsDown isDown, Change change) const {
        for (int key = 0; key < count; ++key)
            if (isDown(key) && amplitude(key) <= 0.0f) change(key, 0.0f);
        for (int key = 0; key < count; ++key)
            if (const float held = amplitude(key); held > 0.0f && !isDown(key)) change(key, held);
    }

private:
    struct Touch {
        TouchId finger;     // of no meaning once it is locked or has a holder
        const void* holder; // null for a finger
        bool locked;
        int key;
        float amplitude;
        bool isFinger() const { return !holder && !locked; }
    };
    Touch* find(TouchId finger);

    std::vector<Touch> touches_;
};

} // namespace zephyra
