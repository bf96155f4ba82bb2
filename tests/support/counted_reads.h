// GateScope and CountedReads: what stands before file calls, and how often each file is opened and
// read, while this lives.
#pragma once

#include "platform/files/file_calls.h"

#include <chrono>
#include <map>
#include <mutex>
#include <utility>

namespace zephyra {

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

/// Of all threads.
class CountedReads {
public:
    int opens(const std::filesystem::path& path) const { return count(path, FileCall::open); }
    int reads(const std::filesystem::path& path) const { return count(path, FileCall::read); }

private:
    int count(const std::filesystem::path& path, FileCall call) const {
        const std::lock_guard lock(mutex_);
        const auto found = calls_.find({path, call});
        return found == calls_.end() ? 0 : found->second;
    }

    mutable std::mutex mutex_;
    std::map<std::pair<std::filesystem::path, FileCall>, int> calls_;
    GateScope gate_{[this](FileCall call, const std::filesystem::path& path) {
        const std::lock_guard lock(mutex_);
        ++calls_[{path, call}];
        return 0;
    }};
};

/// Makes the file old enough for what is known of it to be kept.
inline void ageFile(const std::filesystem::path& path) {
    std::filesystem::last_write_time(path, std::filesystem::file_time_type::clock::now() -
                                               std::chrono::minutes(1));
}

} // namespace zephyra
