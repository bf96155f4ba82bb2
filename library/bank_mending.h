// BankMending: puts records in order as they are checked, and notes what it did.
#pragma once

#include "library/bank_check.h"

#include <cstddef>
#include <map>
#include <string>
#include <vector>

namespace zephyra {

/// The notes of one record after another are told in the order of the bank's keys, whichever came
/// first. MAIN or WORKER.
class BankMending {
public:
    /// damaged is what was lost before, and comes first.
    explicit BankMending(const std::vector<BankFinding>& damaged);

    /// Of a value that is no record, and goes.
    void leaveOut(const std::string& key);
    /// Takes out of record what findings name at its top, and gives it a name where it has none.
    void mend(const std::string& key, PropertyValue& record,
              const std::vector<BankFinding>& findings);
    /// The first kMostFindings, and how many there are more. Once.
    std::vector<std::string> takeNotes();

private:
    void note(const std::string& key, std::string text);

    std::vector<std::string> first_;
    std::map<std::string, std::vector<std::string>> ofRecords_;
    std::size_t noted_ = 0, left_ = 0;
};

/// A key or display name in a message: on one line and not too long.
std::string shownKey(const std::string& name);

} // namespace zephyra
