#include "audiounit/audio_unit_presets.h"

#include "library/bank_edits.h"
#include "library/bank_file.h"
#include "platform/files/folder_entries.h"
#include "platform/text/log.h"
#include "platform/text/odd_bytes.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <mutex>
#include <utility>

namespace zephyra {

namespace {

std::string numberAndName(const AUAudioUnitPreset& preset) {
    return std::to_string(preset.number) + ", " + preset.name;
}

} // namespace

AUAudioUnitPreset NewAUPreset(std::int64_t number, std::string name) {
    return {number, std::move(name)};
}

/// By resource folder, as long as somebody has them.
struct AudioUnitPresets::SharedFactories {
    std::mutex mutex; // guards the map
    std::map<std::filesystem::path, std::weak_ptr<const Factory>> of;
};

AudioUnitPresets::SharedFactories& AudioUnitPresets::shared() {
    static SharedFactories all;
    return all;
}

void AudioUnitPresets::makeFactoryPresets() {
    factory_ = read();
    factoryIndex_ = 0;
    const std::lock_guard lock(shared().mutex);
    shared().of[folders_.resources] = factory_;
}

const AudioUnitPresets::Factory& AudioUnitPresets::factory() {
    if (factory_) return *factory_;
    const std::lock_guard lock(shared().mutex); // the others wait for one who reads
    std::weak_ptr<const Factory>& known = shared().of[folders_.resources];
    factory_ = known.lock();
    if (!factory_) known = factory_ = read();
    return *factory_;
}

std::shared_ptr<const AudioUnitPresets::Factory> AudioUnitPresets::read() const {
    const auto factory = std::make_shared<Factory>();
    for (const std::string& entry : folderEntries(folders_.resources)) {
        if (extensionOf(entry) != kBankExtension) continue;
        Result<BankOnDisk> bank = readBank(folders_.resources / entry);
        if (!bank) {
            log_.write("no factory presets: " + bank.message());
            continue;
        }
        const std::string bankName = shownFile(std::filesystem::path(entry).stem());
        for (const std::string& key : sortedKeys(bank.value().bank)) {
            PropertyDictionary& snapshot = *recordOf(bank.value().bank, key);
            const std::string tag = snapshotTag(snapshot).value_or(kUnnamed);
            factory->presets.push_back(NewAUPreset(
                static_cast<std::int64_t>(factory->presets.size()), tag + " (" + bankName + ")"));
            factory->snapshots.push_back(std::move(snapshot));
        }
    }
    return factory;
}

std::optional<AUAudioUnitPreset> AudioUnitPresets::currentPreset() {
    const std::int64_t number = currentPreset_ ? currentPreset_->number : 0;
    if (number >= 0 && factoryIndex_ < factoryPresets().size()) {
        log_.write("Returning Current Factory Preset: " + std::to_string(factoryIndex_));
        return factoryPresets()[factoryIndex_];
    }
    log_.write("Returning Current Custom Preset: " +
               numberAndName(currentPreset_.value_or(NewAUPreset(0, "(null)"))));
    return currentPreset_;
}

void AudioUnitPresets::setCurrentPreset(const std::optional<AUAudioUnitPreset>& preset,
                                        AudioUnitController* controller) {
    if (!preset) return log_.write("nil passed to setCurrentPreset!");
    if (preset->number < 0)
        setCustomPreset(*preset);
    else
        setFactoryPreset(*preset, controller);
}

void AudioUnitPresets::setCustomPreset(const AUAudioUnitPreset& preset) {
    if (preset.name.empty())
        return log_.write("setCurrentPreset not set! - invalid AUAudioUnitPreset");
    currentPreset_ = preset;
    log_.write("currentPreset Custom: " + numberAndName(preset));
}

void AudioUnitPresets::setFactoryPreset(const AUAudioUnitPreset& preset,
                                        AudioUnitController* controller) {
    const auto index = static_cast<std::size_t>(preset.number);
    if (index >= factoryPresets().size()) return;
    if (controller) controller->restoreState(factory().snapshots[index]);
    currentPreset_ = preset;
    factoryIndex_ = index;
    log_.write("currentPreset Factory: " + numberAndName(preset));
}

} // namespace zephyra
