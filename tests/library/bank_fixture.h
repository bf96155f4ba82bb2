// BankFixture: empty folders for banks, and file calls that are counted or fail.
#pragma once

#include "library/bank_edits.h"
#include "library/bank_folder.h"
#include "platform/files/file_calls.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>
#include <memory>
#include <string>

namespace zephyra {

inline PropertyDictionary named(const std::string& name) {
    return {{kSnapshotTags, name}};
}

/// Adds a preset called "Name"; leaves a bank alone that has one of that key.
inline BankFolder::Change adding(const std::string& key) {
    return [key](Bank& bank) { return bank.emplace(key, named("Name")).second; };
}

class BankFixture : public ::testing::Test {
protected:
    TemporaryFolder shared_, resources_;
    Folders folders_{shared_.path(), resources_.path()};
};

/// Asks gate before each file call, while this lives.
class GateScope {
public:
    explicit GateScope(FileCallGate gate) : before_(setFileCallGate(std::move(gate))) {}
    GateScope(const GateScope&) = delete;
    GateScope& operator=(const GateScope&) = delete;
    ~GateScope() { setFileCallGate(std::move(before_)); }

private:
    FileCallGate before_;
};

/// Counts the calls of one kind, which fail with error unless that is 0.
class CallsOf {
public:
    explicit CallsOf(FileCall wanted, int error = 0)
        : gate_([this, wanted, error](FileCall call, const std::filesystem::path&) {
              if (call != wanted) return 0;
              ++count_;
              return error;
          }) {}
    int count() const { return count_; }

private:
    int count_ = 0;
    GateScope gate_;
};

} // namespace zephyra
