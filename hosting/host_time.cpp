#include "hosting/host_time.h"

#include <cmath>

namespace zephyra {

namespace {

constexpr double kUsualTempo = 120.0, kMostTempo = 1e6; // beats per minute
// What rounding, a tempo that glides, and positions in whole ticks bring is no jump. Back is where
// loops go, some of them short ones.
constexpr double kLeastJumpBack = 1.0 / 32, kLeastJumpOn = 0.5; // quarters

bool isAbove(const std::optional<double>& value, double least) ZEPHYRA_NONBLOCKING {
    return value && std::isfinite(*value) && *value > least;
}

} // namespace

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

void HostTime::follow(const PluginTransport& news) ZEPHYRA_NONBLOCKING {
    const bool hears = followMusic(news);
    const bool placed = news.beats && std::isfinite(*news.beats);
    if (!hears && !placed && !news.moving) return;
    if (!std::isfinite(context_.currentTempo)) setTempo(kUsualTempo);
    if (!std::isfinite(context_.timeSignatureNumerator)) setMeter(4);
    transportTold_ |= news.moving.has_value();
    reportsTransport_ |= transportTold_ || placed;
    if (!transportTold_ && !placed && std::isnan(toldBeats_) && !moving_) setTransport(true);
    if (placed) followPosition(*news.beats);
    if (news.moving && *news.moving != moving_) setTransport(*news.moving);
    reportsContext_ = true;
}

/// Whether there was anything.
bool HostTime::followMusic(const PluginTransport& news) ZEPHYRA_NONBLOCKING {
    const bool tempo = news.tempo && *news.tempo >= 0.0 && *news.tempo <= kMostTempo;
    const bool beats = isAbove(news.numerator, 0.0), value = isAbove(news.denominator, 0.0);
    if (tempo && *news.tempo != context_.currentTempo) setTempo(*news.tempo);
    if (beats) context_.timeSignatureNumerator = *news.numerator;
    if (value) context_.timeSignatureDenominator = *news.denominator;
    return tempo || beats || value;
}

/// Where the host's position goes on as counted here, ours holds: then hosts that tell it always,
/// now and then and once hear the same.
void HostTime::followPosition(double beats) ZEPHYRA_NONBLOCKING {
    const double halfFrame = beatsOf(0.5);
    const double whole = std::round(beats);
    if (std::fabs(beats - whole) < halfFrame) beats = whole; // a bar begins there, not a block late
    const bool isFirst = std::isnan(toldBeats_);
    const bool holds = beats == toldBeats_;
    if (!transportTold_ && (isFirst || rendered_ > toldAt_) && moving_ == holds)
        setTransport(!holds);
    toldBeats_ = beats;
    toldAt_ = rendered_;
    const double leap = beats - beats_;
    if (std::fabs(leap) < halfFrame) return;
    const bool stood = holds && !transportTold_; // else a loop has come round to the same place
    jumped_ = reportsContext_ && !stood && (leap < -kLeastJumpBack || leap > kLeastJumpOn);
    setBeatPosition(beats);
}

double HostTime::beatsOf(double frames) const ZEPHYRA_NONBLOCKING {
    return frames * context_.currentTempo / (60.0 * sampleRate_);
}

void HostTime::keepBeats() ZEPHYRA_NONBLOCKING {
    keptBeats_ = beats_;
    keptAt_ = rendered_;
}

void HostTime::goOn(std::uint32_t frames) ZEPHYRA_NONBLOCKING {
    rendered_ += frames;
    wasMoving_ = moving_;
    jumped_ = false;
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
                  (moving_ != wasMoving_ ? transport_flag::changed : 0u) |
                  (jumped_ ? transport_flag::jumped : 0u);
    return reportsTransport_;
}

} // namespace zephyra
