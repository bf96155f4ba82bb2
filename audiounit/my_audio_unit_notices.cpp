// What RENDER left for MAIN, and what MAIN does about it.

#include "audiounit/my_audio_unit.h"
#include "audiounit/parameter_table.h"
#include "modulation/modulation.h"
#include "stream/stream_controller.h"

#include <bit>
#include <cmath>

namespace zephyra {

namespace {
constexpr double kFirstTempo = 120.0; ///< of a stream that no host has told one
}

void MyAudioUnit::takeNotices() {
    if (!controller_) return;
    takeParameters();
    takeTempo();
    RenderNotice notice;
    while (notices_->take(notice)) act(notice);
}

/// The newest value counts: between mark and take it may have changed again.
void MyAudioUnit::takeParameters() {
    for (std::uint32_t marks = marks_.take(); marks != 0; marks &= marks - 1) {
        const auto address = static_cast<AUParameterAddress>(std::countr_zero(marks));
        controller_->parameterMoved(address, loadParameter(record_, address));
    }
}

void MyAudioUnit::takeTempo() {
    constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
    if (std::isnan(tempo_.load(std::memory_order_relaxed))) return;
    const double tempo = tempo_.exchange(kNone, std::memory_order_relaxed);
    if (controlManager_) controlManager_->syncStateDidChangedWithBPM(tempo);
    _GRANULATOR_STREAM->syncStateDidChangedWithBPM(tempo);
}

void MyAudioUnit::act(const RenderNotice& notice) {
    switch (notice.kind) {
    case RenderNoticeKind::bar:
        return _GRANULATOR_STREAM->syncStateTempoForte();
    case RenderNoticeKind::rewind:
        return _GRANULATOR_STREAM->shouldRewindFromHost();
    case RenderNoticeKind::start:
        return _GRANULATOR_STREAM->shouldPlay();
    case RenderNoticeKind::forceToPlay:
        return _GRANULATOR_STREAM->forceToPlayIfShouldPlay();
    case RenderNoticeKind::stop:
        return _GRANULATOR_STREAM->shouldStop();
    case RenderNoticeKind::noteOn: {
        const StateOrder::Delivery delivery(instance_.states, notice.number);
        return controller_->playNote(notice.note, notice.velocity);
    }
    }
}

void MyAudioUnit::startAnew(bool hostMoves) {
    record_.m_z_dry_wet = record_.m_z_dry_wet_inv = 0.0f;
    record_.hasBeenRewinded = record_.hasBeenSynced = false;
    lastBar_ = std::numeric_limits<double>::quiet_NaN();
    if (hostMoves) record_.lastWasPlaying = false;
    if (!controller_ || record_.lastTempoValue < 0.0) return;
    record_.lastTempoValue = -1.0;
    tempo_.store(kFirstTempo, std::memory_order_relaxed);
    takeTempo();
}

void MyAudioUnit::notice(RenderNoticeKind kind) ZEPHYRA_NONBLOCKING {
    notices_->push({.kind = kind});
}

void MyAudioUnit::noticeNoteOn(int note, int velocity) ZEPHYRA_NONBLOCKING {
    notices_->push({RenderNoticeKind::noteOn, static_cast<std::uint8_t>(note),
                    static_cast<std::uint8_t>(velocity), instance_.states.now()});
}

} // namespace zephyra
