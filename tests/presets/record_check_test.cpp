// What a check says of a preset, whichever were checked before it.

#include "presets/record_check.h"

#include "library/bank_edits.h"
#include "tests/support/counted_reads.h"
#include "tests/support/testing.h"

namespace zephyra {
namespace {

using Lines = std::vector<std::string>;

Lines found(const RecordCheck& check, const std::string& key, const Bank& bank) {
    Lines lines;
    for (const BankFinding& finding : check(key, *recordOf(bank, key)))
        lines.push_back(finding.key + ": " + finding.text + (finding.isElsewhere ? " (file)" : ""));
    return lines;
}

/// Those of a factory bank, which play two sounds, and some with what can be wrong.
Bank withWrongOnes(Bank bank) {
    const PropertyDictionary first = *recordOf(bank, sortedKeys(bank).front());
    const PropertyValue fine = first.at("Sample_0");
    const auto sample = [&fine](std::initializer_list<PropertyDictionary::value_type> values) {
        auto changed = *fine.as<PropertyDictionary>();
        for (const auto& [key, value] : values) changed.insert_or_assign(key, value);
        return changed;
    };
    const std::pair<const char*, PropertyValue> wrong[] = {
        {"Pan_0", "left"}, // beside a sample that is fine
        {"Sample_0", sample({{"Path", "gone.wav"}, {"RelativePath", ""}, {"ContentHash", "0"}})},
        {"Sample_0", sample({{"ContentHash", "0"}})}, // another sound is there
        {"Sample_0", sample({{"SampleRate", "fast"}})},
        {"Sample_0", sample({{"ContentHash", "0"}, {"Audio", PropertyDictionary{{"FLAC", 1}}}})},
        {"Sample_0", 3},
        {"Preset", PropertyDictionary{{"Bank", 1}}}};
    for (std::size_t n = 0; n < 2 * std::size(wrong); ++n) { // each twice
        const auto& [key, value] = wrong[n / 2];
        PropertyDictionary record = first;
        record.insert_or_assign(key, value);
        bank.emplace(std::to_string(n) + " - wrong", std::move(record));
    }
    bank.emplace("99 - nothing", PropertyDictionary{});
    return bank;
}

TEST(RecordCheck, SaysTheSameOfAPresetAloneAndInAnyOrderAndReadsAFineSampleOnce) {
    const TemporaryFolder folder;
    const fs::path resources = ZEPHYRA_SOURCE_DIR "/resources";
    const std::string sounds[] = {"Blackbird.mp3", "Zephyra_Sample08.mp3"};
    for (const std::string& sound : sounds) {
        fs::copy_file(resources / sound, folder / sound);
        ageFile(folder / sound);
    }
    const Folders folders{folder.path(), resources};
    const Bank fine = readBank(resources / "Pulse Garden.zephyra").value().bank;
    const Bank bank = withWrongOnes(fine);
    Lines keys = sortedKeys(bank), alone, inOrder, backwards;
    const auto append = [](Lines& lines, const Lines& more) {
        lines.insert(lines.end(), more.begin(), more.end());
    };
    for (const std::string& key : keys) append(alone, found(makeRecordCheck(folders), key, bank));

    const RecordCheck check = makeRecordCheck(folders), another = makeRecordCheck(folders);
    for (const std::string& key : keys) append(inOrder, found(check, key, bank));
    {
        const CountedReads reads;
        for (const std::string& key : sortedKeys(fine)) EXPECT_EQ(found(check, key, fine), Lines());
        for (const std::string& sound : sounds) EXPECT_EQ(reads.opens(folder / sound), 0) << sound;
    }
    std::ranges::reverse(keys);
    for (const std::string& key : keys) {
        Lines both = found(another, key, bank);
        append(both, backwards);
        backwards = std::move(both);
    }
    EXPECT_GE(alone.size(), 14u) << "two for each that is wrong";
    EXPECT_EQ(std::tuple(inOrder, backwards), std::tuple(alone, alone));
}

} // namespace
} // namespace zephyra
