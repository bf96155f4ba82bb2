#include "library/bank_queue.h"

#include <chrono>
#include <utility>

namespace zephyra {

BankQueue::BankQueue(RunLoop& loop, Log& log, BankFolder& banks)
    : loop_(loop), log_(log), banks_(banks), worker_(std::in_place, loop, log) {}

BankQueue::~BankQueue() {
    using std::chrono::steady_clock;
    const double seconds = banks_.lockWait().seconds;
    const auto until = steady_clock::now() + std::chrono::duration<double>(seconds);
    worker_.reset(); // waits for what is under way, and drops what it has not begun
    banks_.setLockWait({seconds, [until] { return steady_clock::now() < until; }});
    for (const auto& entry : waiting_) {
        if (!entry->begun.exchange(true)) static_cast<void>(perform(*entry));
        follow(*entry);
    }
    for (const std::string& line : banks_.retryAll()) log_.write(line);
    if (steady_clock::now() >= until)
        log_.write("Warning, the last changes of banks may be lost: another program held " +
                   (banks_.folders().shared / BankFolder::kLockName).string());
}

void BankQueue::add(std::string bank, Work work) {
    if (!isBusy() && !loop_.isPaced()) {
        if (const RunLoop::Task answer = work(banks_, bank)) answer();
        return;
    }
    auto entry = std::make_shared<Entry>();
    entry->bank = std::move(bank);
    entry->work = std::move(work);
    waiting_.push_back(std::move(entry));
    if (!running_) startNext();
}

void BankQueue::letGo(BankContent content) {
    if (!loop_.isPaced()) return;
    garbage_.push_back(std::move(content));
    if (!running_) startNext();
}

void BankQueue::startNext() {
    running_ = !waiting_.empty() || !garbage_.empty();
    if (!running_) return;
    auto entry = waiting_.empty() ? nullptr : waiting_.front();
    worker_->start([this, entry, garbage = std::exchange(garbage_, {})](const auto&) {
        RunLoop::Task answer;
        if (entry) {
            if (entry->begun.exchange(true)) return answer;
            answer = perform(*entry);
            entry->work = nullptr; // what it holds may be large: MAIN shall not free it
        }
        return RunLoop::Task([this, alive = std::weak_ptr(alive_), entry, answer] {
            if (entry) {
                waiting_.pop_front();
                follow(*entry);
            }
            if (answer) answer();
            if (!alive.expired()) startNext();
        });
    });
}

RunLoop::Task BankQueue::perform(Entry& entry) {
    entry.after = entry.bank;
    return entry.work(banks_, entry.after);
}

void BankQueue::follow(const Entry& done) {
    for (const auto& entry : waiting_)
        if (!entry->begun && entry->bank == done.bank) entry->bank = done.after;
}

} // namespace zephyra
