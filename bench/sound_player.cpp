#include "bench/sound_player.h"

#include <algorithm>
#include <utility>

namespace zephyra {

SoundPlayer::SoundPlayer(const SoundSetup& setup, std::shared_ptr<const mokSample> sound,
                         std::shared_ptr<const mokSample> comesIn)
    : PluginInstance(PluginKind::effect,
                     [this](Instance& fresh) {
                         hear(fresh);
                         fresh.folders.resources = ZEPHYRA_SOURCE_DIR "/resources";
                         fresh.random.seed(7);
                         fresh.clock.fix(7);
                     }),
      news{.tempo = 120.0, .numerator = 4.0, .denominator = 4.0, .beats = 0.0, .moving = true},
      setup_(setup), comesIn_(std::move(comesIn)) {
    byHand([&](HostedInstance& system) {
        system.stream().setSeed(7);
        if (!setup.state.empty()) system.view.restoreStateProc(setup.state);
        if (sound) system.stream().loadSound(std::move(sound));
        system.view._fadeInTime.setDisplayedValue(0.0f);
    });
    set(ControlId::dryWet, 100.0f);
    if (!prepare({setup.rate, setup.blockFrames})) std::abort();
    set(ControlId::playStop, 1.0f);
}

void SoundPlayer::byHand(const std::function<void(HostedInstance& system)>& act) {
    {
        const RunLoop::Scope main(system().instance.runLoop);
        act(system());
    }
    system().instance.runLoop.runPosted();
}

void SoundPlayer::set(ControlId id, float displayed) {
    byHand([&](HostedInstance& system) {
        if (system.stream().setDisplayed(id, displayed)) return;
        MOK_KNOB* const knob = system.view.knob(id);
        if (!knob) return;
        knob->setDisplayedValue(displayed);
        if (static_cast<std::size_t>(id) < kParameterCount)
            setParameter(static_cast<AUParameterAddress>(id), knob->value());
    });
}

void SoundPlayer::setEven() {
    for (const ControlId id : {ControlId::rndDensity, ControlId::rndLength, ControlId::jittering})
        set(id, 0.0f);
}

void SoundPlayer::play(double seconds) {
    std::vector<float> input(setup_.blockFrames);
    for (std::size_t rest = framesOf(seconds); rest > 0;) {
        const std::size_t count = std::min<std::size_t>(rest, setup_.blockFrames), at = played();
        left.resize(at + count);
        right.resize(at + count);
        if (comesIn_)
            for (std::size_t n = 0; n < count; ++n)
                input[n] = comesIn_->getPtr()[inputAt_++ % comesIn_->size];
        const float* const in = comesIn_ ? input.data() : nullptr;
        renderOffline({.frames = static_cast<std::uint32_t>(count),
                       .input = {in, in},
                       .output = {left.data() + at, right.data() + at},
                       .transport = std::exchange(news, {})});
        rest -= count;
    }
}

} // namespace zephyra
