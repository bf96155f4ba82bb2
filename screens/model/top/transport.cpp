#include "screens/model/top/transport.h"

#include "screens/model/top/music_line.h"

namespace zephyra {

namespace {

Button& buttonOf(StreamControls& controls, TransportButton button) {
    switch (button) {
    case TransportButton::play:
        return controls._playToggle;
    case TransportButton::rewind:
        return controls._rewind;
    case TransportButton::freeze:
        return controls._freeze;
    case TransportButton::live:
        return controls._enableLIVE;
    case TransportButton::clear:
        break;
    }
    return controls.liveClear;
}

PlayState playState(const MOK_SCRUB_GRANULATOR& stream) {
    if (stream.isArmed()) return PlayState::armed;
    if (stream.controls._playToggle.tag == 1 || stream.isStarting()) return PlayState::playing;
    return stream.isPlaying() ? PlayState::fadingOut : PlayState::stopped;
}

ButtonLight light(PlayState play) {
    constexpr ButtonLight kLights[] = {ButtonLight::off, ButtonLight::armed, ButtonLight::alive,
                                       ButtonLight::fading};
    return kLights[static_cast<std::size_t>(play)];
}

} // namespace

ButtonFace TransportShown::face(TransportButton button) const {
    const auto lit = [](bool on, ButtonLight as) { return on ? as : ButtonLight::off; };
    switch (button) {
    case TransportButton::play:
        return {.light = light(play), .isLit = play == PlayState::armed && isOnBeat};
    case TransportButton::rewind:
        return {.light = lit(rewindIsArmed, ButtonLight::armed),
                .isLit = rewindIsArmed && isOnBeat};
    case TransportButton::freeze:
        return {.light = lit(isFrozen, ButtonLight::on)};
    case TransportButton::live:
        return {.light = lit(isLive, ButtonLight::alive), .isEnabled = liveIsAllowed};
    case TransportButton::clear:
        break;
    }
    return {};
}

std::string TransportShown::value(TransportButton button) const {
    if (button == TransportButton::play) {
        constexpr const char* kValues[] = {"stopped", "armed", "playing", "fading out"};
        return kValues[static_cast<std::size_t>(play)];
    }
    const ButtonFace shown = face(button);
    if (!shown.isEnabled) return "unavailable";
    if (shown.light == ButtonLight::armed) return "armed";
    return shown.light == ButtonLight::off ? "" : "on";
}

std::string TransportShown::help(TransportButton button) const {
    switch (button) {
    case TransportButton::play:
        if (play == PlayState::armed) return "Starts at the host's next bar; press to wait no more";
        if (play == PlayState::playing) return "Stop: fades out by the fade-out time";
        return isInSync ? "Play: starts at the host's next bar"
                        : "Play: fades in by the fade-in time";
    case TransportButton::rewind:
        if (rewindIsArmed) return "Rewinds at the host's next bar; press to rewind now";
        return isInSync ? "Rewind the scan to the region's start; hold to wait for the next bar"
                        : "Rewind the scan to the region's start";
    case TransportButton::freeze:
        return isFrozen ? "Frozen: the scan stands, and so does live sound"
                        : "Freeze the scan where it stands, and live sound as it was heard";
    case TransportButton::live:
        if (!liveIsAllowed) return "LIVE has no input in an instrument: load Zephyra as an effect";
        return isLive ? "LIVE: grains are cut from the input; press to go back to the sound"
                      : "LIVE: cut grains from the last seconds of the input";
    case TransportButton::clear:
        break;
    }
    return "Clear: forget what LIVE has heard";
}

Transport::Transport(ScreenContext& context) : context_(context) {
    context_.source.add(*this);
}

Transport::~Transport() {
    context_.source.remove(*this);
}

void Transport::send(TransportButton button, ButtonTouch touch) {
    context_.source.asMain([&](AudioUnitViewController& view) {
        sendTouch(buttonOf(view._GRANULATOR_STREAM.controls, button), touch);
    });
}

void Transport::touch(TransportButton button, ButtonTouch touch) {
    if (button == TransportButton::rewind) return touchRewind(touch);
    const bool isEdit = touch == ButtonTouch::inside &&
                        (button == TransportButton::freeze || button == TransportButton::live);
    if (isEdit && context_.beginEdit)
        context_.beginEdit(button == TransportButton::live ? "LIVE" : "Freeze");
    send(button, touch);
    if (isEdit && context_.endEdit) context_.endEdit();
}

/// One that was held long enough has armed already: then its end presses nothing.
void Transport::touchRewind(ButtonTouch touch) {
    const bool wasDown = rewindHeldSince_.has_value();
    rewindHeldSince_.reset();
    if (touch == ButtonTouch::down)
        rewindHeldSince_ = now_;
    else if (!wasDown)
        touch = ButtonTouch::outside;
    send(TransportButton::rewind, touch);
}

void Transport::armRewind() {
    context_.source.asMain(
        [](AudioUnitViewController& view) { view._GRANULATOR_STREAM.ui_armRewind(); });
}

void Transport::read(AudioUnitViewController& view, const FrameTime& time) {
    MOK_SCRUB_GRANULATOR& stream = view._GRANULATOR_STREAM;
    now_ = time.now;
    if (stream.controls.syncSampler.isOn() && rewindHeldSince_ &&
        now_ - *rewindHeldSince_ >= kHold) {
        rewindHeldSince_.reset();
        stream.ui_armRewind();
    }
    shown_ = {.play = playState(stream),
              .rewindIsArmed = stream.controls._rewind.backgroundColor.has_value(),
              .isFrozen = stream.controls._freeze.tag == 1,
              .isLive = stream.isLive(),
              .liveIsAllowed = stream.liveAllowed(),
              .isInSync = stream.controls.syncSampler.isOn()};
    const bool isArmed = shown_.play == PlayState::armed || shown_.rewindIsArmed;
    shown_.isOnBeat =
        isArmed && !context_.settings.reducedMotion &&
        isBeatLit(context_.source.plugin().music(), view.assignments.currentTempo(), now_);
}

} // namespace zephyra
