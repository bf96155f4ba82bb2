#include "bench/sound_tables.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace zephyra {

namespace {

constexpr double kMinutes = 10.0, kSilence = 0.02; // seconds without sound before an onset
constexpr float kHeard = 1e-3f;

/// Grains close together, and an LFO that cuts them on and off once a beat.
void arrange(SoundPlayer& player) {
    player.set(ControlId::density, 400.0f);
    player.set(ControlId::rndDensity, 0.0f);
    player.set(ControlId::length, 5.0f);
    player.set(ControlId::rndLength, 0.0f);
    player.byHand([](HostedInstance& system) {
        LFO_WIDGETS_MAPPING& lfos = *system.view.assignments.getLfoWidgetsMapping();
        MOK_KNOB& amplitude = system.stream().controls._volume;
        lfos.addWidget(&amplitude);
        LfoWidgetWrapper& lfo = *lfos.getWrapperID(&amplitude);
        lfo.setLfoShapeFromWrapper(kLfoSquare);
        lfo.setLinkIsEnabled(true);
        lfo.setClockSub(LfoWidgetWrapper::kFirstClockSub);
    });
}

struct Onsets {
    std::size_t count = 0;
    double worst = 0.0; // milliseconds from the nearest beat
};

void listen(const SoundPlayer& player, double beatFrames, std::size_t& silent, std::size_t& at,
            Onsets& onsets) {
    const auto enough = player.framesOf(kSilence);
    for (const float sample : player.left) {
        if (std::abs(sample) < kHeard) {
            ++silent;
        } else {
            if (silent > enough) {
                const double beats = static_cast<double>(at) / beatFrames;
                const double off = std::abs(beats - std::round(beats)) * beatFrames;
                onsets.worst = std::max(onsets.worst, 1000.0 * off / player.setup().rate);
                ++onsets.count;
            }
            silent = 0;
        }
        ++at;
    }
}

} // namespace

void printBeat(const SoundSetup& asked) {
    std::printf("| tempo | onsets in ten minutes | furthest from the beat, ms |\n|---|---|---|\n");
    for (const double tempo : {60.0, 97.0, 120.0, 143.0, 180.0}) {
        SoundSetup setup = asked;
        setup.kind = SoundKind::noise;
        setup.blockFrames = 64;
        SoundPlayer player(setup, soundOf(setup.kind));
        player.news.tempo = tempo;
        arrange(player);
        Onsets onsets;
        std::size_t silent = 0, at = 0;
        for (int second = 0; second < static_cast<int>(60.0 * kMinutes); ++second) {
            player.left.clear();
            player.right.clear();
            player.play(1.0);
            listen(player, 60.0 * setup.rate / tempo, silent, at, onsets);
        }
        std::printf("| %.0f | %zu | %.1f |\n", tempo, onsets.count, onsets.worst);
    }
    std::printf("\n");
}

} // namespace zephyra
