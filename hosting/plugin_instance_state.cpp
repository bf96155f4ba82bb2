// What a host reads and sets of PluginInstance beside the sound: parameters, state, programs.
#include "hosting/plugin_instance.h"
#include "stream/embedded_sample.h"

#include <cmath>
#include <string>
#include <utility>

namespace zephyra {

AUValue PluginInstance::parameter(AUParameterAddress address) const ZEPHYRA_NONBLOCKING {
    return loadParameter(system_.unit->record(), address);
}

void PluginInstance::setParameter(AUParameterAddress address, AUValue linear) ZEPHYRA_NONBLOCKING {
    if (address >= kParameterCount || !std::isfinite(linear)) return;
    system_.unit->keepParameter(address, linear, system_.instance.states.now());
    system_.unit->markParameter(address);
}

std::string PluginInstance::state() {
    system_.instance.runLoop.runPosted(); // what the host has just set belongs to it
    const auto text = writePropertyList(system_.view.getStateWith(
        [this](PropertyDictionary& state) { addSession(state, session_); }));
    if (text) return text.value();
    system_.instance.log.write("The state cannot be written: " + text.message());
    return {};
}

Result<void> PluginInstance::setState(std::span<const std::byte> bytes) {
    auto read = readPropertyList(bytes);
    if (!read) return Failure{"the state cannot be read: " + read.message()};
    auto* const state = read.value().as<PropertyDictionary>();
    if (!state)
        return Failure{std::string("the state is no dictionary, but a ") + read.value().typeName()};
    StateFindings findings;
    const auto session = takeSession(*state, findings);
    if (!session) return Failure{session.message()};
    for (const StateFinding& finding : findings) system_.instance.log.write(lineOf(finding));
    system_.view.restoreState_then(std::move(*state),
                                   [this, session = session.value()](StateOrder::Number asked) {
                                       choose(session);
                                       standAsRestored(asked);
                                   });
    system_.instance.runLoop.runPosted();
    return {};
}

void PluginInstance::choose(const PluginSession& session) {
    session_ = session;
    notes_.end = session.settings.notesEnd;
    notes_.first = session.settings.notesBegin;
    setEmbedSeconds(system_.instance.defaults, session.settings.embedSeconds);
    startAnew_ = session.settings.startAnew;
    system_.view.midiManager.followsPrograms = session.settings.followsPrograms;
}

/// Only when nobody has said what is to play since the state was asked for.
void PluginInstance::standAsRestored(StateOrder::Number asked) {
    const bool noted = isInstrument() && notes_.restored(asked);
    if (system_.unit->setSince(static_cast<AUParameterAddress>(ControlId::playStop), asked)) return;
    MOK_SCRUB_GRANULATOR& stream = system_.stream();
    const bool synced = stream.controls.syncSampler.isOn();
    if (noted && !synced) return notes_.begin();
    const bool plays = synced ? system_.unit->hostMoves() : !isInstrument();
    stream.setDisplayed(ControlId::playStop, plays ? 1.0f : 0.0f);
}

const std::vector<AUAudioUnitPreset>& PluginInstance::programs() {
    const RunLoop::Scope main(system_.instance.runLoop);
    return system_.unit->factoryPresets();
}

std::optional<std::size_t> PluginInstance::chosenProgram() {
    const RunLoop::Scope main(system_.instance.runLoop);
    const auto chosen = session_.program;
    return chosen && *chosen < system_.unit->factoryPresets().size() ? chosen : std::nullopt;
}

void PluginInstance::setProgram(std::size_t number) {
    {
        const RunLoop::Scope main(system_.instance.runLoop);
        const auto& all = system_.unit->factoryPresets();
        if (number >= all.size()) return;
        system_.unit->setCurrentPreset(all[number]);
        session_.program = number;
    }
    system_.instance.runLoop.runPosted();
}

PluginSettings PluginInstance::settings() {
    const RunLoop::Scope main(system_.instance.runLoop);
    return session_.settings;
}

void PluginInstance::setSettings(const PluginSettings& chosen) {
    const RunLoop::Scope main(system_.instance.runLoop);
    choose({chosen, session_.program});
}

void PluginInstance::loadSample(const std::filesystem::path& path) {
    const RunLoop::Scope main(system_.instance.runLoop);
    system_.view.loadSample(path);
}

} // namespace zephyra
