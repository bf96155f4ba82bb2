#include "cli/commands/commands.h"

#include "cli/terminal/json_text.h"
#include "cli/terminal/text_table.h"
#include "library/bank_edits.h"
#include "library/preset_search.h"
#include "platform/files/folder_entries.h"
#include "platform/text/message_text.h"
#include "platform/text/odd_bytes.h"
#include "presets/bank_facts.h"
#include "presets/preset_facts.h"
#include "presets/preset_names.h"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <vector>

namespace zephyra {

namespace {

using Json = nlohmann::ordered_json;

std::string stem(const std::string& bank) {
    return std::string(stemOf(bank));
}

const char* ownerOf(const ListedBank& bank) {
    return bank.isFactory() ? "factory" : "user";
}

/// The banks, or the one that was asked for.
Result<std::vector<ListedBank>> listedBanks(BankFolder& banks, const BanksRequest& request) {
    std::vector<ListedBank> listed = banks.list();
    if (!request.bank) return listed;
    const auto name = findBank(banks, *request.bank);
    if (!name) return Failure{name.message()};
    std::erase_if(listed, [&](const ListedBank& bank) { return bank.name != name.value(); });
    if (listed.empty()) return Failure{inQuotes(*request.bank) + " was made just now; try again"};
    return listed;
}

// --- the banks ---

/// Why it cannot be read, without the path that the message begins with.
std::string reasonOf(const std::string& message, const std::filesystem::path& file) {
    const std::string lead = shownFile(file) + " cannot be read: ";
    return message.starts_with(lead) ? message.substr(lead.size()) : message;
}

void tellFacts(Json& entry, const BankFacts& facts, const std::string& purpose) {
    entry["presets"] = facts.presets;
    entry["live"] = facts.listening;
    entry["tempo"] = facts.inTempo;
    entry["captured"] = facts.captured;
    entry["samples"] = facts.samples;
    if (!purpose.empty()) entry["purpose"] = purpose;
}

ExitCode listBanks(BankFolder& banks, const std::vector<ListedBank>& listed, bool asJson) {
    TextTable table;
    Json json = Json::array();
    for (const ListedBank& bank : listed) {
        const auto file = banks.locate(bank.name);
        Json entry = {
            {"name", stem(bank.name)}, {"file", file.string()}, {"factory", bank.isFactory()}};
        if (const auto content = banks.read(bank.name)) {
            const BankFacts facts = bankFacts(*content.value());
            const std::string purpose = bank.isFactory() ? bankPurpose(file) : std::string();
            const std::string needs = needsText(facts);
            tellFacts(entry, facts, purpose);
            table.addRow({stem(bank.name), ownerOf(bank), counted(facts.presets, "preset"),
                          purpose.empty() ? needs : purpose + "; " + needs});
        } else {
            entry["problem"] = content.message();
            table.addRow({stem(bank.name), ownerOf(bank),
                          "cannot be read: " + reasonOf(content.message(), file)});
        }
        json.push_back(std::move(entry));
    }
    if (asJson) return printOut(textOfJson(std::move(json)));
    if (!table.isEmpty()) return printOut(table.text());
    const Folders& folders = banks.folders();
    return printOut(onOneLine("no bank stands in " + folders.shared.string() + " and " +
                              folders.resources.string()) +
                    "\n");
}

// --- one bank's presets ---

ExitCode listPresets(BankFolder& banks, const ListedBank& bank, bool asJson) {
    const auto content = banks.read(bank.name);
    if (!content) return endWith(ExitCode::failure, content.message());
    TextTable table;
    Json presets = Json::array();
    for (const std::string& key : sortedKeys(*content.value())) {
        const PropertyDictionary* const record = recordOf(*content.value(), key);
        if (!record) continue;
        const PresetFacts facts = presetFacts(*record);
        const std::string name = snapshotTag(*content.value(), key).value_or(kUnnamed);
        const std::size_t number = presets.size() + 1;
        table.addRow({std::to_string(number), name, soundText(facts),
                      facts.followsTempo ? "follows the tempo" : ""});
        presets.push_back({{"number", number},
                           {"name", name},
                           {"key", key},
                           {"sample", facts.sample.empty() ? Json(nullptr) : Json(facts.sample)},
                           {"live", facts.listensToInput},
                           {"tempo", facts.followsTempo}});
    }
    if (asJson)
        return printOut(textOfJson({{"name", stem(bank.name)},
                                    {"file", banks.locate(bank.name).string()},
                                    {"factory", bank.isFactory()},
                                    {"presets", std::move(presets)}}));
    if (table.isEmpty()) return printOut(onOneLine(stem(bank.name)) + " holds no preset\n");
    return printOut(table.text());
}

// --- what a search found ---

/// The preset's number in its bank, from 1; 0 for a whole bank.
std::size_t numberOf(BankFolder& banks, const FoundPreset& found) {
    const auto summary = banks.summary(found[0]);
    if (!summary) return 0;
    const auto& snapshots = summary.value()->snapshots;
    const auto place = std::ranges::find(snapshots, found[2], &BankSummary::Snapshot::key);
    return place == snapshots.end() ? 0 : static_cast<std::size_t>(place - snapshots.begin()) + 1;
}

ExitCode listFound(BankFolder& banks, const std::vector<ListedBank>& listed,
                   const BanksRequest& request) {
    TextTable table;
    Json json = Json::array();
    for (const FoundPreset& found : searchPresets(banks, listed, *request.search)) {
        const auto& [bank, name, detail] = found;
        const std::size_t number = numberOf(banks, found);
        if (number == 0) {
            table.addRow({stem(bank), "", "", detail});
            json.push_back({{"bank", stem(bank)}});
            continue;
        }
        table.addRow({stem(bank), std::to_string(number), name});
        json.push_back({{"bank", stem(bank)}, {"number", number}, {"name", name}, {"key", detail}});
    }
    if (request.json) return printOut(textOfJson(std::move(json)));
    if (!table.isEmpty()) return printOut(table.text());
    return printOut("no bank and no preset has " + onOneLine(inQuotes(*request.search)) +
                    " in its name\n");
}

} // namespace

ExitCode runBanks(const CommandContext& context, const BanksRequest& request) {
    if (request.search && request.search->empty())
        return endWith(ExitCode::wrongUsage, "--search takes a part of a name, not \"\"");
    BankFolder banks(context.folders);
    const auto listed = listedBanks(banks, request);
    if (!listed) return endWith(ExitCode::failure, listed.message());
    if (request.search) return listFound(banks, listed.value(), request);
    if (request.bank) return listPresets(banks, listed.value().front(), request.json);
    return listBanks(banks, listed.value(), request.json);
}

} // namespace zephyra
