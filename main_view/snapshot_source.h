// SnapshotSource: what the preset store sees of the view controller, its state as presets keep it.
#pragma once

#include "library/quick_presets_manager_delegate.h"
#include "platform/instance.h"
#include "platform/threads/worker.h"

#include <functional>
#include <vector>

namespace zephyra {

class AudioUnitViewController;
class SoundKeeping;

/// In a host, a sound that gets a file before a preset names it is written on WORKER. MAIN.
class SnapshotSource final : public QuickPresetsManagerDelegate {
public:
    /// Both must outlive this; view is not used before it is built.
    SnapshotSource(AudioUnitViewController& view, Instance& instance);

    // QuickPresetsManagerDelegate
    PropertyDictionary getState() override;
    void prepareState(const std::function<void()>& ready) override;
    void restoreStateProc(const PropertyDictionary& state) override;
    void restoreStateProc_asked(const PropertyDictionary& state, StateOrder::Number asked) override;

private:
    void finish(SoundKeeping& keeping);

    AudioUnitViewController& view_;
    Instance& instance_;
    std::vector<std::function<void()>> waiting_; // for the file that is being written
    bool isPrepared_ = false;
    Worker worker_;
};

} // namespace zephyra
