#include "audiounit/audio_unit_presets.h"

#include "library/bank_edits.h"
#include "library/bank_file.h"
#include "platform/files/folder_entries.h"
#include "platform/text/log.h"
#include "platform/text/odd_bytes.h"

#include <algorithm>
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

void AudioUnitPresets::makeFactoryPresets() {
    factoryPresets_.clear();
    factorySnapshots_.clear();
    for (const std::string& entry : folderEntries(folders_.resources))
        if (extensionOf(entry) == kBankExtension) addPresets(folders_.resources / entry);
    factoryIndex_ = 0;
    made_ = true;
}

void AudioUnitPresets::addPresets(const std::filesystem::path& bank) {
    Result<BankOnDisk> read = readBank(bank);
    if (!read) return log_.write("no factory presets: " + read.message());
    for (const std::string& key : sortedKeys(read.value().bank)) {
        PropertyDictionary& snapshot = *recordOf(read.value().bank, key);
        const std::string tag = snapshotTag(snapshot).value_or(kUnnamed);
        factoryPresets_.push_back(NewAUPreset(static_cast<std::int64_t>(factoryPresets_.size()),
                                              tag + " (" + shownFile(bank.stem()) + ")"));
        factorySnapshots_.push_back(std::move(snapshot));
    }
}

const std::vector<AUAudioUnitPreset>& AudioUnitPresets::factoryPresets() {
    if (!made_) makeFactoryPresets();
    return factoryPresets_;
}

std::optional<AUAudioUnitPreset> AudioUnitPresets::currentPreset() {
    const std::int64_t number = currentPreset_ ? currentPreset_->number : 0;
    if (number >= 0 && factoryIndex_ < factoryPresets().size()) {
        log_.write("Returning Current Factory Preset: " + std::to_string(factoryIndex_));
        return factoryPresets_[factoryIndex_];
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
    if (controller) controller->restoreState(factorySnapshots_[index]);
    currentPreset_ = preset;
    factoryIndex_ = index;
    log_.write("currentPreset Factory: " + numberAndName(preset));
}

} // namespace zephyra
