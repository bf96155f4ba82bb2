#include "plugin/juce/standalone/midi_inputs.h"

#include "hosting/plugin_names.h"
#include "plugin/standalone/jack_client.h"

#include <algorithm>

namespace zephyra {

void MidiInputs::refresh() {
    if (!hasSystemMidi()) return; // asking all the same would print complaints
    if (!own_ && (own_ = juce::MidiInput::createNewDevice(kEffectNames.name, this))) own_->start();
    const auto there = juce::MidiInput::getAvailableDevices();
    const auto isThere = [&](const juce::String& identifier) {
        return std::ranges::any_of(there,
                                   [&](const auto& d) { return d.identifier == identifier; });
    };
    std::erase_if(devices_, [&](const auto& open) { return !isThere(open->getIdentifier()); });
    for (const auto& device : there) {
        const bool isOpen = std::ranges::any_of(
            devices_, [&](const auto& open) { return open->getIdentifier() == device.identifier; });
        if (isOpen) continue;
        if (auto opened = juce::MidiInput::openDevice(device.identifier, this)) {
            opened->start();
            devices_.push_back(std::move(opened));
        }
    }
}

juce::String MidiInputs::names() const {
    juce::StringArray all;
    for (const auto& device : devices_) all.add(device->getName());
    return all.joinIntoString(", ");
}

} // namespace zephyra
