// UnwrittenChanges: changes of one bank that its file does not have yet.
#pragma once

#include "library/bank_change.h"

#include <string>
#include <vector>

namespace zephyra {

/// Plain data. MAIN or WORKER, one thread at a time.
struct UnwrittenChanges {
    BankContent base; ///< what the changes were made to, should the file be gone
    std::vector<BankChange> changes = {};
    BankContent shown;    ///< base with the changes
    bool isGuess = false; ///< base was not read: a file that is there could not be

    /// Who makes the changes to another version.
    enum class For {
        reading, ///< what is refused for now stays with the others
        writing, ///< what is refused is dropped
    };
    /// Answers why changes were dropped, a line each.
    std::vector<std::string> rebase(const BankContent& newBase, For what);
};

} // namespace zephyra
