#include "library/preset_search.h"

#include "platform/text/names.h"

namespace zephyra {

std::vector<FoundPreset> searchPresets(BankFolder& banks, const std::vector<ListedBank>& list,
                                       std::string_view text, const std::atomic<bool>& cancelled) {
    const std::string wanted = foldCase(text);
    std::vector<FoundPreset> found;
    for (const ListedBank& bank : list) {
        if (cancelled) break;
        std::size_t count = 0;
        if (const auto summary = banks.summary(bank.name)) {
            count = summary.value()->snapshots.size();
            for (const BankSummary::Snapshot& snapshot : summary.value()->snapshots)
                if (snapshot.hasTag && snapshot.foldedTag.find(wanted) != std::string::npos)
                    found.push_back({bank.name, snapshot.tag, snapshot.key});
        }
        if (foldCase(bank.name).find(wanted) != std::string::npos)
            found.push_back(
                {bank.name, bank.name, "(Contains " + std::to_string(count) + " Presets)"});
    }
    return found;
}

} // namespace zephyra
