#include "screens/model/top/transport.h"

#include "screens/model/help_texts.h"
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

HelpId helpOf(const TransportShown& shown, TransportButton button) {
    switch (button) {
    case TransportButton::play:
        if (shown.play == PlayState::armed) return HelpId::playArmed;
        if (shown.play == PlayState::playing) return HelpId::stop;
        return shown.isInSync ? HelpId::playSynced : HelpId::play;
    case TransportButton::rewind:
        if (shown.rewindIsArmed) return HelpId::rewindArmed;
        return shown.isInSync ? HelpId::rewindSynced : HelpId::rewind;
    case TransportButton::freeze:
        return shown.isFrozen ? HelpId::frozen : HelpId::freeze;
    case TransportButton::live:
        if (!shown.liveIsAllowed) return HelpId::liveUnavailable;
        return shown.isLive ? HelpId::liveOn : HelpId::live;
    case TransportButton::clear:
        break;
    }
    return HelpId::liveClear;
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
    return helpText(helpOf(*this, button));
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
    std::optional<ScreenEdit> edit;
    if (isEdit) edit.emplace(context_, button == TransportButton::live ? "LIVE" : "Freeze");
    send(button, touch);
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
