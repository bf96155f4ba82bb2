#include "presets/factory_banks.h"

#include "library/bank_name.h"
#include "platform/files/folder_entries.h"
#include "platform/text/names.h"
#include "presets/picked_presets.h"

namespace zephyra {

std::optional<std::string> factoryBank(const BankFolder& banks, const std::string& bank) {
    const std::string folded = foldCase(bank);
    std::optional<std::string> alike;
    for (const std::string& file : folderEntries(banks.folders().resources)) {
        auto name = bankNameOf(file);
        if (name == bank) return name;
        if (name && !alike && foldCase(*name) == folded) alike = std::move(name);
    }
    return alike;
}

Result<void> checkIsNotTheFactorys(const BankFolder& banks, const std::string& bank,
                                   const std::string& instead) {
    if (banks.isInSharedFolder(bank)) return {};
    const auto factorys = factoryBank(banks, bank);
    if (!factorys || banks.isInSharedFolder(*factorys)) return {};
    return Failure{quotedBank(*factorys) + " is a factory bank; " + instead};
}

std::string bankToSaveInto(const BankFolder& banks, const std::string& bank) {
    if (banks.isInSharedFolder(bank)) return bank;
    return factoryBank(banks, bank).value_or(bank);
}

} // namespace zephyra
