// runJobs: many jobs in child processes of this one, a few at a time, each of which may fail or die
// without harm to the others.
#pragma once

#include <cstddef>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>

namespace zephyra {

/// By which a job in its child process tells the parent. Any thread of the child.
class JobLine {
public:
    /// descriptor: the pipe to write to; whoever opened it closes it.
    explicit JobLine(int descriptor) : descriptor_(descriptor) {}

    /// The share of the job that is done, 0 to 1.
    void share(double done);
    /// A text of some kind, any letter but the one for shares.
    void say(char kind, std::string_view text);
    static constexpr char kShare = 's';

private:
    void send(char kind, std::string_view bytes);

    int descriptor_;
    double told_ = -1; // the share
    std::mutex writing_;
};

/// How a child ended.
struct JobEnd {
    int code = -1;        ///< its exit code, -1 when it died or never began
    std::string why = {}; ///< then: the reason, for people
};

/// Told in the parent, while the jobs run. Each may be empty.
struct JobEvents {
    std::function<void(std::size_t job, char kind, const std::string& text)> said;
    std::function<void(double share)> progressed; ///< of all jobs together, 0 to 1
    std::function<void(std::size_t job, const JobEnd& end)> ended;
};

/// Runs job(0) to job(count - 1), each in a child of its own with what it answers as exit code, at
/// most atOnce at a time. Once stop answers true no more are begun, and those under way are asked
/// to end (interrupted() is true in them). True when all were run. The process must have no other
/// threads. MAIN.
bool runJobs(std::size_t count, std::size_t atOnce,
             const std::function<int(std::size_t job, JobLine& line)>& job, const JobEvents& events,
             const std::function<bool()>& stop);

/// How many jobs this machine runs at a time.
std::size_t processorCount();

} // namespace zephyra
