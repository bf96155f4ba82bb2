// QuickPresetsManagerDelegate: who provides the state that a preset holds, and takes it back.
#pragma once

#include "platform/lists/property_list.h"
#include "platform/threads/state_order.h"

#include <functional>

namespace zephyra {

/// Implemented by the main view controller. MAIN.
class QuickPresetsManagerDelegate {
public:
    virtual ~QuickPresetsManagerDelegate() = default;
    /// The whole current state as a preset keeps it.
    virtual PropertyDictionary getState() = 0;
    /// Calls ready once getState no longer has to wait for files: at once, or later on MAIN; not
    /// after this is gone.
    virtual void prepareState(const std::function<void()>& ready) { ready(); }
    /// Applies a snapshot record, "SnapshotTags" among it.
    virtual void restoreStateProc(const PropertyDictionary& state) = 0;
    /// The same later than it was asked for: what was set since stays as it is.
    virtual void restoreStateProc_asked(const PropertyDictionary& state, StateOrder::Number) {
        restoreStateProc(state);
    }
    /// The store is to be closed.
    virtual void dismissQuickPresetsManager() {}
};

} // namespace zephyra
