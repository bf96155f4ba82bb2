#include "engine/grain_taps.h"

#include <cmath>
#include <new>
#include <numbers>

namespace zephyra {

namespace {

/// A Kaiser-windowed sinc, at a transposition of 0.
struct Design {
    int taps;
    double cutoff; ///< where it halves, in cycles a frame
    double shape;  ///< the window's: 8 keeps noise below -80 dB, 9 below -90
    int phases;    ///< between them taps are interpolated, with an error of about phases^-2
    int semitones; ///< up to which there are narrower ones
};

constexpr Design kFine{.taps = 8, .cutoff = 0.48, .shape = 8, .phases = 256, .semitones = 0};
constexpr Design kBest{.taps = 32,
                       .cutoff = 0.43,
                       .shape = 9,
                       .phases = 256,
                       .semitones = GrainTapSet::kMostSemitones};
static_assert(kBest.taps << (GrainTapSet::kMostSemitones / 12) == GrainTapSet::kMostTaps);

/// The modified Bessel function of order 0.
double bessel(double x) {
    double sum = 1, term = 1;
    for (int k = 1; term > sum * 1e-12; ++k) {
        term *= x * x / (4.0 * k * k);
        sum += term;
    }
    return sum;
}

/// The design's response at a time in frames, but for its height.
double response(const Design& design, double time) {
    const double place = 2 * time / design.taps;
    if (std::abs(place) >= 1) return 0;
    const double angle = 2 * std::numbers::pi * design.cutoff * time;
    const double sinc = angle == 0 ? 1 : std::sin(angle) / angle;
    return sinc * bessel(design.shape * std::sqrt(1 - place * place));
}

/// The taps for a fraction of a frame, of sum 1.
std::vector<double> tapsAt(const Design& design, double rate, int count, double fraction) {
    std::vector<double> taps(static_cast<std::size_t>(count));
    double sum = 0, frame = 1 - count / 2;
    for (double& tap : taps) sum += tap = response(design, (frame++ - fraction) / rate);
    for (double& tap : taps) tap /= sum;
    return taps;
}

/// The design stretched to a rate: its cutoff is divided by it.
GrainTaps tapsFor(const Design& design, double rate) {
    const auto count = static_cast<int>(std::ceil(design.taps * rate / TapGroup::kTaps - 1e-9));
    GrainTaps made{
        .groups = count, .phases = static_cast<int>(std::ceil(design.phases / rate)), .rows = {}};
    made.rows.reserve(static_cast<std::size_t>(made.groups * (made.phases + 1)));
    const auto at = [&](int phase) {
        return tapsAt(design, rate, count * TapGroup::kTaps, double(phase) / made.phases);
    };
    std::vector<double> now = at(0);
    for (int phase = 0; phase <= made.phases; ++phase) {
        const std::vector<double> next = at(phase + 1);
        for (std::size_t n = 0; n < now.size(); n += TapGroup::kTaps) {
            TapGroup& group = made.rows.emplace_back();
            for (std::size_t k = 0; k < TapGroup::kTaps; ++k) {
                group.taps[k] = static_cast<float>(now[n + k]);
                group.slopes[k] = static_cast<float>(next[n + k] - now[n + k]);
            }
        }
        now = next;
    }
    return made;
}

} // namespace

GrainTapSet::GrainTapSet(GrainQuality quality) {
    const Design& design = quality == GrainQuality::best ? kBest : kFine;
    for (int semitones = 0; semitones <= design.semitones; ++semitones) {
        const double rate = std::exp2(semitones / 12.0);
        byRate_.push_back(tapsFor(design, rate));
        rates_.push_back(static_cast<float>(rate) * 1.0001f); // a rate just beyond may be rounding
    }
}

const GrainTapSet* GrainTapSet::of(GrainQuality quality) noexcept {
    if (quality == GrainQuality::classic) return nullptr;
    try {
        if (quality == GrainQuality::fine) {
            static const GrainTapSet fine(GrainQuality::fine);
            return &fine;
        }
        static const GrainTapSet best(GrainQuality::best);
        return &best;
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

const GrainTaps* GrainTapSet::forRate(float rate) const ZEPHYRA_NONBLOCKING {
    const float speed = rate < 0.0f ? -rate : rate;
    std::size_t n = 0;
    while (n + 1 < rates_.size() && speed > rates_[n]) ++n;
    return &byRate_[n];
}

} // namespace zephyra
