// CompareSlots: two versions of a sound, A and B, to switch between.
#pragma once

#include "platform/lists/property_list.h"

#include <array>
#include <cstddef>
#include <optional>

namespace zephyra {

class AudioUnitViewController;

/// A is what is; B begins as a copy of it when it is chosen first. Each keeps what is edited while
/// it is chosen. Switching is an edit, so that undo finds its way through both. A host's state
/// begins with A alone. MAIN.
class CompareSlots {
public:
    enum class Slot : std::size_t { a, b };

    /// view outlives this.
    explicit CompareSlots(AudioUnitViewController& view) : view_(view) {}

    Slot chosen() const { return chosen_; }
    /// Restores what slot holds, as undo does: what plays plays on.
    void choose(Slot slot);
    /// An undo is about to restore what slot holds, which is the chosen one from now on; the other
    /// one keeps what is.
    void stand(Slot slot);
    /// Only A is left, and it is what is.
    void clear();

private:
    /// What is, as a slot holds it.
    PropertyDictionary state() const;
    std::optional<PropertyDictionary>& held(Slot slot) {
        return held_[static_cast<std::size_t>(slot)];
    }

    AudioUnitViewController& view_;
    Slot chosen_ = Slot::a;
    std::array<std::optional<PropertyDictionary>, 2> held_; // of the chosen one it is out of date
};

} // namespace zephyra
