#include "presets/bank_opening.h"

#include "library/bank_edits.h"
#include "library/shared_folder.h"
#include "platform/files/folder_entries.h"
#include "platform/text/odd_bytes.h"
#include "presets/picked_presets.h"
#include "presets/preset_adding.h"

#include <algorithm>
#include <utility>

namespace zephyra {

namespace {

bool isThere(const BankFolder& banks, const std::string& name) {
    return std::ranges::any_of(banks.list(),
                               [&](const ListedBank& bank) { return bank.name == name; });
}

/// Whether the bank of that name holds content now; it is made when there is none.
Result<bool> holds(BankFolder& banks, const std::string& name, const BankCache::Content& content) {
    if (!isThere(banks, name)) {
        auto added = addWholeBank(banks, name, content, IfTaken::refuse);
        if (!added || added.value()) return added;
    }
    const auto there = banks.read(name); // one that cannot be read is another
    return there && *there.value() == *content;
}

} // namespace

Result<OpenedBank> openBank(BankFolder& banks, const std::filesystem::path& file) {
    auto read = readBank(file);
    if (!read) return Failure{read.message()};
    const auto content = std::make_shared<const Bank>(std::move(read.value().bank));
    const std::string typed(stemOf(typedFromBytes(file.filename().string())));
    if (const auto ready = prepareSharedFolder(banks.folders()); !ready)
        return Failure{ready.message()};
    for (int number = 1;; ++number) {
        const auto name = newBankName(number == 1 ? typed : typed + " " + std::to_string(number));
        if (!name) return Failure{shownFile(file) + ": " + name.message()};
        const auto held = holds(banks, name.value(), content);
        if (!held) return Failure{held.message()};
        if (!held.value()) continue;
        const auto keys = sortedKeys(*content);
        return OpenedBank{name.value(), keys.empty() ? "" : keys.front()};
    }
}

} // namespace zephyra
