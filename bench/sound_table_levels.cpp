#include "bench/sound_measures.h"
#include "bench/sound_tables.h"
#include "engine/envelope_menu.h"

#include <algorithm>
#include <cstdio>
#include <string_view>

namespace zephyra {

namespace {

constexpr double kPool = 24.0, kPoints = 6.0, kSettles = 2.5, kListens = 2.0;
constexpr double kDensity = 50.0, kLength = 0.085; // as they stand while the other one moves

/// With less jitter neighbours read the same frames, and how they add up is the sound's own matter.
constexpr float kJitters[] = {5.0f, 50.0f, 500.0f}; // milliseconds

struct Standing {
    std::size_t envelope;
    float jitter;
    ControlId moved;
};

double level(const SoundSetup& setup, const Standing& standing, float displayed) {
    SoundPlayer player(setup, soundOf(setup.kind));
    player.set(ControlId::jittering, standing.jitter);
    player.byHand([&](HostedInstance& system) { system.stream().pickEnvelope(standing.envelope); });
    player.set(standing.moved, displayed);
    player.play(kSettles);
    const std::size_t from = player.played();
    player.play(kListens);
    return decibels(rms(std::span(player.left).subspan(from)));
}

/// dB between the loudest and the softest, from an overlap of 1 to a full pool.
double span(const SoundSetup& setup, const Standing& standing) {
    double least = 1e9, most = -1e9;
    for (double point = 0.0; point < kPoints; ++point) {
        const double overlap = std::pow(kPool, point / (kPoints - 1.0));
        const double displayed =
            standing.moved == ControlId::density ? overlap / kLength : 1000.0 * overlap / kDensity;
        const double now = level(setup, standing, static_cast<float>(displayed));
        least = std::min(least, now);
        most = std::max(most, now);
    }
    return most - least;
}

} // namespace

void printLevels(const SoundSetup& asked) {
    std::printf(
        "| dB between the softest and the loudest | density, noise | length, noise | density, "
        "speech | length, speech |\n|---|---|---|---|---|\n");
    for (std::size_t n = 0; n < kEnvelopeMenu.size(); ++n) {
        const auto name = std::string_view(kEnvelopeMenu[n]).substr(sizeof "Grain Envelope:");
        std::printf("| %.*s |", static_cast<int>(name.size()), name.data());
        for (const SoundKind kind : {SoundKind::noise, SoundKind::speech})
            for (const ControlId moved : {ControlId::density, ControlId::length}) {
                SoundSetup setup = asked;
                setup.kind = kind;
                double worst = 0.0;
                for (const float jitter : kJitters)
                    worst = std::max(worst, span(setup, {n, jitter, moved}));
                std::printf(" %.1f |", worst);
            }
        std::printf("\n");
    }
    std::printf("\n");
}

} // namespace zephyra
