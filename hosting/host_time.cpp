#include "hosting/host_time.h"

#include <cmath>

namespace zephyra {

void HostTime::start(double sampleRate) ZEPHYRA_NONBLOCKING {
    sampleRate_ = sampleRate;
    rendered_ = keptAt_ = 0;
    keptBeats_ = beats_;
}

void HostTime::setTempo(double beatsPerMinute) ZEPHYRA_NONBLOCKING {
    keepBeats();
    context_.currentTempo = beatsPerMinute;
}

void HostTime::setMeter(double numerator, double denominator) ZEPHYRA_NONBLOCKING {
    context_.timeSignatureNumerator = numerator;
    context_.timeSignatureDenominator = denominator;
}

void HostTime::setBeatPosition(double beats) ZEPHYRA_NONBLOCKING {
    beats_ = beats;
    keepBeats();
}

void HostTime::setTransport(bool moving) ZEPHYRA_NONBLOCKING {
    keepBeats();
    moving_ = moving;
}

void HostTime::keepBeats() ZEPHYRA_NONBLOCKING {
    keptBeats_ = beats_;
    keptAt_ = rendered_;
}

void HostTime::goOn(std::uint32_t frames) ZEPHYRA_NONBLOCKING {
    rendered_ += frames;
    wasMoving_ = moving_;
    if (moving_ && std::isfinite(context_.currentTempo))
        beats_ = keptBeats_ + static_cast<double>(rendered_ - keptAt_) * context_.currentTempo /
                                  (60.0 * sampleRate_);
}

bool HostTime::musicalContext(AUMusicalContext& context) const ZEPHYRA_NONBLOCKING {
    if (!reportsContext_ || !std::isfinite(context_.currentTempo)) return false;
    context = context_;
    context.currentBeatPosition = beats_;
    return true;
}

bool HostTime::transportState(AUTransportState& state) const ZEPHYRA_NONBLOCKING {
    state.flags = (moving_ ? transport_flag::moving : 0u) |
                  (moving_ != wasMoving_ ? transport_flag::changed : 0u);
    return reportsTransport_;
}

} // namespace zephyra
