// BankQueue: changes of banks, carried out one after another in the order of their making.
#pragma once

#include "library/bank_folder.h"
#include "platform/text/log.h"
#include "platform/threads/run_loop.h"
#include "platform/threads/worker.h"

#include <atomic>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace zephyra {

/// On WORKER while the run loop is paced, because a change waits for other programs and for the
/// disk; else at once. The next one begins when the answer of the one before is done. MAIN.
class BankQueue {
public:
    /// What is done to the bank that has the name by then: on WORKER, to banks, which nobody else
    /// changes meanwhile. What waits for that bank follows it to the name that bank has afterwards,
    /// also where the store ends. The answer is done on MAIN.
    using Work = std::function<RunLoop::Task(BankFolder& banks, std::string& bank)>;

    /// All must outlive this.
    BankQueue(RunLoop& loop, Log& log, BankFolder& banks);
    /// Carries out what is left and what could not be written, without answers, on the calling
    /// thread. The lock is waited for as long as one change may, all together.
    ~BankQueue();
    BankQueue(const BankQueue&) = delete;
    BankQueue& operator=(const BankQueue&) = delete;

    void add(std::string bank, Work work);
    /// Whether something waits or is under way.
    bool isBusy() const { return running_ || !waiting_.empty(); }

    /// Frees a bank, which takes long when it is large, on WORKER.
    void letGo(BankContent content);

private:
    struct Entry {
        std::string bank, after; ///< its name before and after the work
        Work work;
        std::atomic<bool> begun{false};
    };
    RunLoop::Task perform(Entry& entry);
    void follow(const Entry& done);
    void startNext();

    RunLoop& loop_;
    Log& log_;
    BankFolder& banks_;
    std::deque<std::shared_ptr<Entry>> waiting_; // the first one may be under way
    std::vector<BankContent> garbage_;
    bool running_ = false;
    std::shared_ptr<const bool> alive_ = std::make_shared<const bool>(true);
    std::optional<Worker> worker_;
};

} // namespace zephyra
