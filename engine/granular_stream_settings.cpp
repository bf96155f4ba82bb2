// The setters of mokGranulatorSF: user units in, single words for the render thread out.

#include "effects/dsp_runtime.h"
#include "engine/granular_stream.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace zephyra {

namespace {

constexpr float kSmallestSpan = 1e-5f;      // keeps the scan frequency finite
constexpr float kPlaceholderScanHz = 1e-5f; // silence needs no scan
constexpr float kMostJitterSeconds = 1.0f;
constexpr float kDefaultJitterSeconds = 0.005f;

/// Stores value unless it is not finite. Only results count: a width of infinity is the widest.
void keepFinite(Relaxed<float>& field, float value) noexcept {
    if (std::isfinite(value)) field = value;
}

/// One sine term of the pan law.
float panTerm(float p) noexcept {
    return static_cast<float>(std::sin(double{std::clamp(p, 0.0f, 1.0f)} * (std::numbers::pi / 2)));
}

} // namespace

float mokGranulatorSF::sampleDuration() const noexcept {
    return sample.load()->duration();
}

void mokGranulatorSF::setDefaults() noexcept {
    level = 0.5f;
    width = 0.25f;
    setPan(0.0f);
    spareA = spareB = 0.25f;
    grainLength = 0.085f;
    density = 50.0f;
    rndLength = 0.25f;
    rndDensity = 0.25f;
    setPitch(0.0f);
    setSpeed(1.0f);
    setStart(0.0f);
    setEnd(1.0f);
    rndPitch = 0.0f;
    if (!ownsSample) keepFinite(jitter, kDefaultJitterSeconds / sampleDuration());
}

void mokGranulatorSF::setLevel(const float& v) noexcept {
    keepFinite(level, v);
}

void mokGranulatorSF::setWidth(const float& v) noexcept {
    keepFinite(width, std::min(std::abs(v), 1.0f)); // a NaN stays one
}

void mokGranulatorSF::setPan(const float& p) noexcept {
    if (std::isnan(p)) return;
    panA = panTerm(p);
    panB = panTerm(p + 1.0f);
    panRestA = 1.0f - panA;
    panRestB = 1.0f - panB;
}

void mokGranulatorSF::setLength(const float& ms) noexcept {
    keepFinite(grainLength, std::abs(ms) * 0.001f);
}

void mokGranulatorSF::setDensity(const float& d) noexcept {
    keepFinite(density, std::abs(d));
}

void mokGranulatorSF::setRndLength(const float& r) noexcept {
    keepFinite(rndLength, r * 0.5f);
}

void mokGranulatorSF::setRndDensity(const float& r) noexcept {
    keepFinite(rndDensity, r * 0.5f);
}

void mokGranulatorSF::setPitch(const float& semitones) noexcept {
    if (ownsSample) return;
    const mokSample& source = *sample.load();
    const float ownRate = source.sampleRate / static_cast<float>(source.size);
    keepFinite(playbackRate,
               static_cast<float>(gen_msp_pow(2.0, double{semitones} / 12.0) * double{ownRate}));
}

void mokGranulatorSF::setSpanAndStart(float span, float start, float end) noexcept {
    if (!std::isfinite(span) || !std::isfinite(start) || !std::isfinite(end)) return;
    scanSpan = span;
    scanStart = start;
    scanEnd = end;
    setSpeed(speed.load());
}

void mokGranulatorSF::setStart(const float& s) noexcept {
    setSpanAndStart(scanEnd - s, s, scanEnd); // signed, unlike setEnd's
}

void mokGranulatorSF::setEnd(const float& e) noexcept {
    const float span = std::abs(e - scanStart);
    setSpanAndStart(span == 0.0f ? kSmallestSpan : span, scanStart, e);
}

void mokGranulatorSF::setRndPitch(const float& r) noexcept {
    keepFinite(rndPitch, r / 24.0f);
}

void mokGranulatorSF::setJittering(const float& ms) noexcept {
    if (ownsSample) return;
    keepFinite(jitter, std::min(std::abs(ms * 0.001f), kMostJitterSeconds) / sampleDuration());
}

void mokGranulatorSF::setSpeed(const float& v) noexcept {
    if (!std::isfinite(v)) return;
    const float span = scanSpan == 0.0f ? kSmallestSpan : scanSpan.load();
    const float frequency = ownsSample ? kPlaceholderScanHz : v / (sampleDuration() * span);
    if (scanPhasor.setFrequency(frequency)) speed = v;
}

} // namespace zephyra
