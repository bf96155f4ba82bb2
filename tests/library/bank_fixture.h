// BankFixture: empty folders for banks, and file calls that are counted or fail.
#pragma once

#include "library/bank_edits.h"
#include "library/bank_folder.h"
#include "tests/support/counted_reads.h"
#include "tests/support/testing.h"

#include <sys/wait.h>
#include <unistd.h>

namespace zephyra {

inline PropertyDictionary named(const std::string& name) {
    return {{kSnapshotTags, name}};
}

/// Adds a preset called "Name"; leaves a bank alone that has one of that key.
inline BankFolder::Change adding(const std::string& key) {
    return [key](Bank& bank) { return bank.emplace(key, named("Name")).second; };
}

struct BankFixture : ::testing::Test {
    TemporaryFolder shared_, resources_;
    Folders folders_{shared_.path(), resources_.path()};
};

/// Counts the calls of one kind, which fail with error unless that is 0.
class CallsOf {
public:
    explicit CallsOf(FileCall wanted, int error = 0)
        : gate_([this, wanted, error](FileCall call, const fs::path&) {
              if (call != wanted) return 0;
              ++count_;
              return error;
          }) {}
    int count() const { return count_; }

private:
    int count_ = 0;
    GateScope gate_;
};

/// Runs work in a process of its own, which ends with its answer.
inline pid_t inChild(const std::function<int()>& work) {
    const pid_t child = ::fork();
    if (child == 0) ::_exit(work());
    return child;
}

/// -1 when a signal ended it.
inline int exitCode(pid_t child) {
    int status = 0;
    EXPECT_EQ(::waitpid(child, &status, 0), child);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

constexpr int kDied = 9;

/// The exit code of work in a process that dies, with kDied, at its file call number point.
inline int exitCodeWhenDyingAt(int point, const std::function<int()>& work) {
    return exitCode(inChild([&] {
        const GateScope gate([calls = 0, point](FileCall, const auto&) mutable {
            return ++calls == point ? (::_exit(kDied), 0) : 0;
        });
        return work();
    }));
}

} // namespace zephyra
