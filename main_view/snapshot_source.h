// SnapshotSource: what the preset store sees of the view controller, its state as presets keep it.
#pragma once

#include "library/quick_presets_manager_delegate.h"

namespace zephyra {

class AudioUnitViewController;

/// MAIN.
class SnapshotSource final : public QuickPresetsManagerDelegate {
public:
    /// view must outlive this; it is not used before it is built.
    explicit SnapshotSource(AudioUnitViewController& view) : view_(view) {}

    // QuickPresetsManagerDelegate
    PropertyDictionary getState() override;
    void restoreStateProc(const PropertyDictionary& state) override;
    void restoreStateProc_asked(const PropertyDictionary& state, StateOrder::Number asked) override;

private:
    AudioUnitViewController& view_;
};

} // namespace zephyra
