#include "main_view/snapshot_source.h"

#include "main_view/audio_unit_view_controller.h"
#include "stream/sound_keeping.h"

#include <memory>
#include <utility>

namespace zephyra {

SnapshotSource::SnapshotSource(AudioUnitViewController& view, Instance& instance)
    : view_(view), instance_(instance), worker_(instance.runLoop, instance.log) {}

PropertyDictionary SnapshotSource::getState() {
    return isPrepared_ ? view_.snapshotAsItIs() : view_.snapshotState();
}

void SnapshotSource::prepareState(const std::function<void()>& ready) {
    if (!instance_.runLoop.isPaced()) return ready(); // getState writes the file
    waiting_.push_back(ready);
    if (worker_.busy()) return;
    const auto keeping = std::make_shared<SoundKeeping>(view_._GRANULATOR_STREAM);
    if (!keeping->isNeeded()) return finish(*keeping);
    worker_.start([this, keeping](const Worker::Cancelled&) {
        keeping->write();
        return RunLoop::Task([this, keeping] { finish(*keeping); });
    });
}

void SnapshotSource::finish(SoundKeeping& keeping) {
    if (const Result<void> kept = keeping.finish(view_._GRANULATOR_STREAM); !kept)
        presentWarning(instance_.alerts, kept.message());
    isPrepared_ = true;
    for (const auto& ready : std::exchange(waiting_, {})) ready();
    isPrepared_ = false;
}

void SnapshotSource::restoreStateProc(const PropertyDictionary& state) {
    view_.restorePreset(state, instance_.states.ask());
}

void SnapshotSource::restoreStateProc_asked(const PropertyDictionary& state,
                                            StateOrder::Number asked) {
    view_.restorePreset(state, asked);
}

} // namespace zephyra
