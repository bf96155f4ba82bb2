// HeldLog: keeps the log's lines back, for when one line to the user is enough.
#pragma once

#include "platform/text/log.h"

#include <string>
#include <utility>
#include <vector>

namespace zephyra {

/// Drops what was logged while it lived, unless it was released. MAIN.
class HeldLog {
public:
    HeldLog() : before_(setLogSink([this](std::string_view line) { lines_.emplace_back(line); })) {}
    HeldLog(const HeldLog&) = delete;
    HeldLog& operator=(const HeldLog&) = delete;
    ~HeldLog() { setLogSink(std::move(before_)); }

    /// Lets those of the lines so far that are wanted go on to the log.
    template <typename Wanted>
    void release(const Wanted& wanted) {
        LogSink holding = setLogSink(before_);
        for (const std::string& line : std::exchange(lines_, {}))
            if (wanted(line)) logLine(line);
        setLogSink(std::move(holding));
    }

    /// What was held back so far.
    const std::vector<std::string>& lines() const { return lines_; }

private:
    std::vector<std::string> lines_;
    LogSink before_;
};

} // namespace zephyra
