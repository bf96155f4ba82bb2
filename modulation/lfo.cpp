#include "modulation/lfo.h"

#include "platform/random_source.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace zephyra {

namespace {

/// Where the value of a shape is at the range's two ends, as what its inverse starts from.
struct Ends {
    double low, high;
};

constexpr std::array<Ends, 5> kEnds = {{
    {-1.0, 1.0}, // sine
    {1.0, 0.0},  // square
    {0.0, 0.5},  // v, the rising half
    {0.0, 1.0},  // rise
    {1.0, 0.0},  // fall
}};

Ends endsOf(std::int64_t shape) {
    const bool listed = shape >= kLfoSine && shape <= kLfoLineFall;
    return listed ? kEnds[static_cast<std::size_t>(shape)] : Ends{0.0, 1.0};
}

bool isRandom(std::int64_t shape) {
    return shape == kLfoRandom || shape == kLfoRandomInterp;
}

/// What shape gives at the phase.
double shapeValue(const lfo_data& lfo) {
    const double p = std::min(lfo.phi, 1.0); // a phase set from outside may lie beyond
    switch (lfo.shape) {
    case kLfoSine:
        // Phase 1 is the table's beginning again.
        return lfo
            .sineTable[static_cast<std::size_t>(p * lfo_data::kTableSize) % lfo_data::kTableSize];
    case kLfoSquare:
        return 2.0 * p > 0.0 && 2.0 * p < 1.0 ? 1.0 : 0.0;
    case kLfoV:
        return 2.0 * p <= 1.0 ? 2.0 * p : 2.0 - 2.0 * p;
    case kLfoLineFall:
        return 1.0 - p;
    case kLfoRandom:
        return lfo.value;
    case kLfoRandomInterp:
        return double{lfo.lastRandomValue} +
               std::abs(p) * (double{lfo.currentRandomValue} - double{lfo.lastRandomValue});
    default:
        return p;
    }
}

void beginCycle(lfo_data& lfo, RandomSource& random) {
    lfo.phi -= std::ceil(lfo.phi) - 1.0; // 1, unless the phase was set beyond 2
    if (!isRandom(lfo.shape)) return;
    lfo.lastRandomValue = lfo.currentRandomValue;
    lfo.value = random.next32() * 0x1p-32;
    lfo.currentRandomValue = static_cast<float>(lfo.value);
}

} // namespace

MOK_LFO::MOK_LFO(RandomSource& random) : data_{}, random_(random) {
    constexpr double kTurn = 6.283185308; // 2π to nine decimals: more move table points
    for (std::size_t n = 0; n < lfo_data::kTableSize; ++n)
        data_.sineTable[n] = static_cast<float>(
            0.5 + 0.5 * std::sin(static_cast<double>(n) * (1.0 / lfo_data::kTableSize) * kTurn));
}

void MOK_LFO::setPhase(double p) {
    if (!std::isfinite(p)) return;
    data_.phi = std::max(p, 0.0);
    data_.begin = {data_.phi, data_.currentRandomValue, data_.lastRandomValue, data_.value};
}

void MOK_LFO::startAnew() {
    data_.phi = data_.begin.phi;
    data_.currentRandomValue = data_.begin.currentRandomValue;
    data_.lastRandomValue = data_.begin.lastRandomValue;
    data_.value = data_.begin.value;
}

void MOK_LFO::setHz(double hz) {
    if (std::isfinite(hz)) data_.hz = std::clamp(hz, kLowestLfoRate, kHighestLfoRate);
}

double MOK_LFO::valueAtPhase() const {
    return shapeValue(data_);
}

void MOK_LFO::resetPhaseAccordingToShape_MinRange_MaxRange_Phase(std::int64_t shape, double min,
                                                                 double max, double v) {
    const double norm = max == min ? 0.0 : (v - min) / (max - min);
    const Ends ends = endsOf(shape);
    double x = ends.low + norm * (ends.high - ends.low);
    if (shape == kLfoSine) x = 0.5 - std::asin(x) / (2.0 * std::numbers::pi);
    if (!std::isfinite(x)) return; // a place that the shape never comes to
    if (isRandom(shape)) {
        data_.currentRandomValue = data_.lastRandomValue = static_cast<float>(x);
        data_.value = x;
    }
    setPhase(x);
}

void processLFO(MOK_LFO* lfo) {
    if (!lfo) return;
    lfo_data& data = lfo->data_;
    data.phi += data.hz * kLfoTick;
    if (data.phi > 1.0) beginCycle(data, lfo->random_);
    data.value = shapeValue(data);
    if (data.lfoWrapperDelegate) data.lfoWrapperDelegate->lfoValue(data.value);
}

} // namespace zephyra
