#include "main_view/compare_slots.h"

#include "main_view/audio_unit_view_controller.h"

namespace zephyra {

PropertyDictionary CompareSlots::state() const {
    PropertyDictionary state = view_.editState();
    state.erase(edit_key::kSlot);
    return state;
}

void CompareSlots::choose(Slot slot) {
    if (slot == chosen_) return;
    view_.edits.beginEdit(slot == Slot::a ? "Compare A" : "Compare B", EditKind::compare);
    view_.edits.takeWhole();
    const PropertyDictionary now = state();
    held(chosen_) = now;
    const PropertyDictionary wanted = held(slot).value_or(now);
    chosen_ = slot;
    view_.restorePart(view_.partOf(wanted, view_.changedKeys(now, wanted)));
    view_.edits.endEdit();
}

void CompareSlots::stand(Slot slot) {
    if (slot == chosen_) return;
    held(chosen_) = state();
    chosen_ = slot;
}

void CompareSlots::clear() {
    chosen_ = Slot::a;
    held_ = {};
}

} // namespace zephyra
