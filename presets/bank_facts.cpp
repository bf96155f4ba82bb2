#include "presets/bank_facts.h"

#include "library/bank_edits.h"
#include "platform/files/whole_file.h"
#include "platform/text/message_text.h"
#include "presets/preset_facts.h"

#include <vector>

namespace zephyra {

namespace {

constexpr std::size_t kMostPurposeBytes = 4096;

std::string soundsText(const BankFacts& facts) {
    std::vector<std::string> parts;
    if (facts.samples.size() == 1) parts.push_back(*facts.samples.begin());
    if (facts.samples.size() > 1) parts.push_back(std::to_string(facts.samples.size()) + " sounds");
    if (facts.captured == 1) parts.emplace_back("a captured sound");
    if (facts.captured > 1) parts.push_back(std::to_string(facts.captured) + " captured sounds");
    if (parts.empty() && facts.listening < facts.presets) parts.emplace_back("no sound");
    return parts.empty() ? "" : parts.size() == 1 ? parts[0] : parts[0] + ", " + parts[1];
}

std::string inputText(const BankFacts& facts) {
    if (facts.listening == 0) return {};
    if (facts.listening == facts.presets) return "live input";
    return std::to_string(facts.listening) + " with live input";
}

std::string tempoText(const BankFacts& facts) {
    if (facts.inTempo == 0) return {};
    if (facts.inTempo == 1) return facts.presets == 1 ? "follows the tempo" : "1 follows the tempo";
    const bool all = facts.inTempo == facts.presets;
    return (all ? "all" : std::to_string(facts.inTempo)) + " follow the tempo";
}

} // namespace

BankFacts bankFacts(const Bank& bank) {
    BankFacts facts;
    for (const std::string& key : sortedKeys(bank)) {
        const PropertyDictionary* const record = recordOf(bank, key);
        if (!record) continue;
        const PresetFacts preset = presetFacts(*record);
        ++facts.presets;
        facts.inTempo += preset.followsTempo;
        if (preset.listensToInput)
            ++facts.listening;
        else if (!preset.sample.empty())
            facts.samples.insert(preset.sample);
        else
            facts.captured += preset.holdsSound;
    }
    return facts;
}

std::string needsText(const BankFacts& facts) {
    std::string text;
    if (facts.presets == 0) return text;
    for (const std::string& part : {soundsText(facts), inputText(facts), tempoText(facts)})
        if (!part.empty()) text.append(text.empty() ? "" : ", ").append(part);
    return text;
}

std::string bankPurpose(const std::filesystem::path& bankFile) {
    std::filesystem::path file = bankFile;
    const auto read = readWholeFile(file.replace_extension(".about"), kMostPurposeBytes);
    if (!read) return {};
    std::string text;
    for (const std::byte byte : read.value().bytes) {
        if (byte == std::byte{'\n'}) break;
        text.push_back(static_cast<char>(byte));
    }
    return onOneLine(text);
}

} // namespace zephyra
