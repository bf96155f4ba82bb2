// BankChange: what is done to a bank, whichever version of it stands on disk by then.
#pragma once

#include "library/bank_file.h"
#include "platform/text/result.h"

#include <functional>
#include <string>
#include <utility>

namespace zephyra {

/// What a change says of the bank that it was given: that it changed it, or not and why.
struct ChangeAnswer {
    ChangeAnswer(bool isChanged) : applies(isChanged) {}
    ChangeAnswer(Failure why) : refusal(std::move(why.message)) {}

    bool applies = false;
    std::string refusal; ///< one line for the user; empty where nothing is to be said
};

/// Changes a bank in place; may be run again on another version of it. Touches nothing but the bank
/// and what it captured. MAIN or WORKER, one thread at a time.
using BankChange = std::function<ChangeAnswer(Bank& bank)>;

/// What a change makes of a version.
struct ChangedBank {
    BankContent content; ///< null where the bank is left alone
    std::string refusal;
};
inline ChangedBank changedBank(const BankContent& before, const BankChange& change) {
    auto copy = std::make_shared<Bank>(*before);
    ChangeAnswer answer = change(*copy);
    return {answer.applies ? std::move(copy) : nullptr, std::move(answer.refusal)};
}

} // namespace zephyra
