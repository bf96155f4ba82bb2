#include "main_view/snapshot_source.h"

#include "main_view/audio_unit_view_controller.h"

namespace zephyra {

PropertyDictionary SnapshotSource::getState() {
    return view_.snapshotState();
}

void SnapshotSource::restoreStateProc(const PropertyDictionary& state) {
    view_.restoreStateProc(state);
}

void SnapshotSource::restoreStateProc_asked(const PropertyDictionary& state,
                                            StateOrder::Number asked) {
    view_.restoreStateProc_asked(state, asked);
}

} // namespace zephyra
