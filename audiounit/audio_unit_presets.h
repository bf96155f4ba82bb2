// AudioUnitPresets: the presets of one audio unit as its host numbers them.
#pragma once

#include "audiounit/audio_unit_controller.h"
#include "platform/audio_unit/audio_unit_preset.h"
#include "platform/files/folders.h"
#include "platform/lists/property_list.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace zephyra {

class Log;

AUAudioUnitPreset NewAUPreset(std::int64_t number, std::string name);

/// The factory's are the snapshots of the banks that came with the program, numbered through all of
/// them; the user's own are kept by the host, which brings them back as a full state. MAIN. What
/// was read is shared by all of the process that have the same resource folder.
class AudioUnitPresets {
public:
    /// folders must outlive this. No file is read yet.
    AudioUnitPresets(const Folders& folders, Log& log) : folders_(folders), log_(log) {}

    /// Reads the banks of the resource folder again, sorted by bytes, each one's keys without
    /// regard to case. One that cannot be read adds nothing but a log line. Numbers hold as long as
    /// these files do.
    void makeFactoryPresets();
    /// "Name (Bank)", numbered from 0. The first call makes them, unless another one's are there.
    const std::vector<AUAudioUnitPreset>& factoryPresets() { return factory().presets; }

    /// What was chosen last. Without a choice the factory's first, if there is any.
    std::optional<AUAudioUnitPreset> currentPreset();
    /// A number of the factory hands its snapshot to controller (null: to nobody); an unknown one
    /// changes nothing. One below 0 is remembered if it has a name. Nothing, and no name, are
    /// refused with a log line.
    void setCurrentPreset(const std::optional<AUAudioUnitPreset>& preset,
                          AudioUnitController* controller);

private:
    struct Factory {
        std::vector<AUAudioUnitPreset> presets;
        std::vector<PropertyDictionary> snapshots; // one for each of presets
    };
    struct SharedFactories;
    static SharedFactories& shared();

    const Factory& factory();
    std::shared_ptr<const Factory> read() const;
    void setCustomPreset(const AUAudioUnitPreset& preset);
    void setFactoryPreset(const AUAudioUnitPreset& preset, AudioUnitController* controller);

    const Folders& folders_;
    Log& log_;
    std::shared_ptr<const Factory> factory_; // null: not made yet
    std::optional<AUAudioUnitPreset> currentPreset_;
    std::size_t factoryIndex_ = 0; // of the one that was chosen last
};

} // namespace zephyra
