// What the controls of a render stand at when it begins.
#include "rendering/offline_render.h"

#include "audiounit/control_text.h"

#include <algorithm>

namespace zephyra {

namespace {

/// Live input is held once its buffer has heard about as much as it keeps.
constexpr double kMostSecondsBeforeFreeze = 10.0;

bool isScanSetting(const ControlSetting& setting) {
    return setting.control == ControlId::scanning || setting.control == ControlId::scrubbingWave;
}

} // namespace

Result<void> OfflineRender::apply(const ControlSetting& setting) {
    MOK_KNOB* const own = controller_.ownKnob(setting.control);
    if (own) {
        own->setDisplayedValue(setting.value);
        own->sendEventValueChanged();
    }
    const bool taken = own || stream().setDisplayed(setting.control, setting.value);
    if (taken) return {};
    return Failure{"the stream does not take " + settingText(setting) + "; memory may be short"};
}

Result<void> OfflineRender::applyRegion() {
    if (plan_.start || plan_.end)
        stream().setRegion(plan_.start.value_or(stream().regionStart()),
                           plan_.end.value_or(stream().regionEnd()));
    return {};
}

/// A fresh effect chooses a scan of its own as soon as it runs, unless one was set before.
Result<void> OfflineRender::applyScanSettings() {
    for (const ControlSetting& setting : plan_.settings)
        if (isScanSetting(setting))
            if (const auto done = apply(setting); !done) return done;
    return applyRegion();
}

Result<void> OfflineRender::applySettings() {
    for (const ControlSetting& setting : plan_.settings)
        if (const auto done = apply(setting); !done) return done;
    if (plan_.quality) stream().setQuality(*plan_.quality);
    if (plan_.envelope && !stream().pickEnvelope(*plan_.envelope)) return memoryIsShort();
    if (plan_.steadyLevel) stream().setSteadyLevel(true);
    return applyRegion();
}

Result<void> OfflineRender::applyHostOptions() {
    const HostRequest& host = plan_.host;
    std::vector<ControlSetting> settings;
    const auto add = [&settings](ControlId id, double value) {
        settings.push_back({id, static_cast<float>(value)});
    };
    if (plan_.wetOnly) add(ControlId::dryWet, 100);
    if (host.dryWet) add(ControlId::dryWet, double{*host.dryWet});
    if (host.fadeIn) add(ControlId::fadeIn, *host.fadeIn);
    if (host.fadeOut) add(ControlId::fadeOut, *host.fadeOut);
    if (host.scanSync) {
        add(ControlId::measures, host.scanSync->first);
        add(ControlId::quarters, host.scanSync->second);
        add(ControlId::scanSync, 1);
    }
    if (host.echoSync) {
        add(ControlId::leftSubdivision, static_cast<double>(host.echoSync->first));
        add(ControlId::rightSubdivision, static_cast<double>(host.echoSync->second));
        add(ControlId::echoSync, 1);
        add(ControlId::echoSwitch, 1);
    }
    if (host.freeze && !host.freezeSeconds && !stream().isLive()) add(ControlId::freeze, 1);
    for (const ControlSetting& setting : settings)
        if (const auto done = apply(setting); !done) return done;
    return {};
}

/// What is to be held later does not stand before.
Result<void> OfflineRender::scheduleFreeze() {
    const HostRequest& host = plan_.host;
    const bool isHeld = stream().linear(ControlId::freeze) != 0 &&
                        (!stream().isLive() || stream().waveForm().isHeld());
    if (!host.freeze || (isHeld && !host.freezeSeconds)) return {};
    const double half = 0.5 * plan_.secondsAt(plan_.playFrames);
    insertByTime(plan_.timedSettings,
                 {host.freezeSeconds.value_or(std::min(half, kMostSecondsBeforeFreeze)),
                  {ControlId::freeze, 1}});
    return apply({ControlId::freeze, 0});
}

} // namespace zephyra
