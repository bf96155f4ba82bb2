#include "library/unwritten_changes.h"

#include <utility>

namespace zephyra {

std::vector<std::string> UnwrittenChanges::rebase(const BankContent& newBase, For what) {
    std::vector<std::string> dropped;
    base = shown = newBase;
    std::erase_if(changes, [&](const BankChange& change) {
        ChangedBank made = changedBank(shown, change);
        if (made.content) shown = std::move(made.content);
        if (made.refusal.empty() || what == For::reading) return false;
        dropped.push_back(std::move(made.refusal));
        return true;
    });
    return dropped;
}

} // namespace zephyra
