#include "presets/preset_choice.h"

#include "controls/state_keys.h"
#include "library/bank_edits.h"
#include "platform/lists/property_reader.h"
#include "presets/preset_names.h"
#include "stream/control_ranges.h"

namespace zephyra {

Result<std::vector<PresetChoice>> choosePresets(BankFolder& banks, const NamedPreset& named) {
    const Result<std::string> bank =
        named.bank ? findBank(banks, *named.bank) : findBankWith(banks, named.preset);
    if (!bank) return Failure{bank.message()};
    const Result<BankCache::Content> content = banks.read(bank.value()); // first: it tells all else
    if (!content) return Failure{content.message()};
    const Result<std::vector<std::string>> keys = findPresets(banks, bank.value(), named.preset);
    if (!keys) return Failure{keys.message()};

    std::vector<PresetChoice> choices;
    for (const std::string& key : keys.value()) {
        const PropertyDictionary* const record = recordOf(*content.value(), key);
        if (!record) continue;
        PropertyReader reader(*record);
        choices.push_back(
            {.bank = bank.value(),
             .file = banks.locate(bank.value()),
             .key = key,
             .name = snapshotTag(*record).value_or(kUnnamed),
             .record = std::shared_ptr<const PropertyDictionary>(content.value(), record),
             .live =
                 reader.boolean(ofStream(controlRange(ControlId::live).channel)).value_or(false),
             .hasSound = reader.dictionary(ofStream(state_key::kSample)) ||
                         reader.dictionary(ofStream(state_key::kCaptured))});
    }
    if (choices.empty())
        return Failure{bank.value() + " holds no preset; save one with --save-preset"};
    return choices;
}

std::vector<std::filesystem::path> sampleFiles(const PresetChoice& preset, const Folders& folders) {
    PropertyReader reader(*preset.record);
    const PropertyDictionary* const sample = reader.dictionary(ofStream(state_key::kSample));
    if (!sample) return {};
    PropertyReader reference(*sample);
    std::vector<std::filesystem::path> files;
    for (const char* key : {sample_key::kPath, sample_key::kRelativePath}) {
        const std::filesystem::path path = reference.text(key).value_or("");
        if (path.empty()) continue;
        files.push_back(folders.shared / path); // an absolute one stays as it is
        files.push_back(folders.shared / path.filename());
    }
    return files;
}

} // namespace zephyra
