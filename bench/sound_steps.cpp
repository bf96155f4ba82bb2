#include "bench/sound_steps.h"

#include <algorithm>
#include <cmath>

namespace zephyra {

namespace {

/// Until an echo and a fade have come to rest; what is around a change begins that long before.
constexpr double kSettleSeconds = 3.0, kAhead = 0.1;

} // namespace

double StepFigure::ratio() const {
    return around / std::max({before, after, 1e-4});
}

double largestStep(const SoundPlayer& player, std::size_t first, std::size_t last) {
    double largest = 0.0;
    for (const auto* const side : {&player.left, &player.right})
        for (std::size_t n = std::max<std::size_t>(first, 1); n < last; ++n)
            largest = std::max(largest, std::abs(double{(*side)[n]} - double{(*side)[n - 1]}));
    return largest;
}

StepFigure measureStep(const SoundChange& change, const SoundSetup& setup, double at) {
    SoundPlayer player(setup, soundOf(setup.kind), soundOf(setup.kind, 1));
    player.setEven();
    if (change.before) change.before(player);
    player.play(kSettleSeconds + kStaticSeconds + at);
    const std::size_t changed = player.played(), ahead = player.framesOf(kAhead);
    change.change(player);
    player.play(kAroundSeconds - kAhead);
    const std::size_t over = player.played(), stands = player.framesOf(kStaticSeconds);
    player.play(kSettleSeconds + kStaticSeconds);
    return {largestStep(player, changed - ahead - stands, changed - ahead),
            largestStep(player, changed - ahead, over),
            largestStep(player, player.played() - stands, player.played())};
}

double worstRatio(const SoundChange& change, const SoundSetup& setup) {
    double worst = 0.0;
    for (const double at : {0.7506, 0.8109, 1.4324})
        worst = std::max(worst, measureStep(change, setup, at).ratio());
    return worst;
}

} // namespace zephyra
