#include "presets/picked_presets.h"

#include "library/bank_edits.h"
#include "platform/files/folder_entries.h"
#include "platform/text/message_text.h"
#include "platform/text/names.h"

#include <algorithm>

namespace zephyra {

Result<PickedPresets> pickPresets(BankFolder& banks, std::string_view bank,
                                  std::string_view preset) {
    const auto name = findBank(banks, bank);
    if (!name) return Failure{name.message()};
    const auto content = banks.read(name.value()); // first: it tells all else
    if (!content) return Failure{content.message()};
    auto keys = findPresets(banks, name.value(), preset);
    if (!keys) return Failure{keys.message()};
    for (const std::string& key : keys.value()) // another program may have changed the bank
        if (!recordOf(*content.value(), key))
            return Failure{quotedBank(name.value()) + " is being changed; try again"};
    return PickedPresets{name.value(), content.value(), std::move(keys.value())};
}

Result<std::string> newBankName(std::string_view typed) {
    std::string name(typed);
    if (extensionOf(name) != kBankExtension) name.append(".").append(kBankExtension);
    if (isNewBankName(name)) return name;
    return Failure{"no bank can be called " + inQuotes(typed) +
                   "; a name is UTF-8 of at most 247 bytes, without / and control characters, and "
                   "neither \".\" nor \"..\""};
}

Result<std::string> findOrNameBank(BankFolder& banks, std::string_view typed) {
    auto found = findBank(banks, typed);
    if (found) return found;
    auto name = newBankName(typed);
    if (!name) return name;
    const std::string folded = foldCase(name.value());
    const auto isAlike = [&](const ListedBank& bank) { return foldCase(bank.name) == folded; };
    const auto listed = banks.list();
    return std::ranges::any_of(listed, isAlike) ? found : name; // more than one is called so
}

Result<void> checkIsUsersBank(const BankFolder& banks, const std::string& bank) {
    if (banks.isInSharedFolder(bank)) return {};
    return Failure{quotedBank(bank) +
                   " came with the program and stays as it is; `zephyra preset copy " +
                   typedBank(bank) + " '*' NEW` makes a bank of your own of it"};
}

std::string quotedBank(std::string_view bank) {
    return inQuotes(stemOf(bank));
}

} // namespace zephyra
