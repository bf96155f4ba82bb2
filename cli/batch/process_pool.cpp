#include "cli/batch/process_pool.h"

#include "cli/terminal/interrupt.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstring>
#include <fcntl.h>
#include <map>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace zephyra {

namespace {

constexpr int kPollMilliseconds = 100; // how late stop is noticed
constexpr double kLeastShareStep = 0.005;

// A message is its kind, the length of what follows, and that.
constexpr std::size_t kHeaderBytes = 1 + sizeof(std::uint32_t);

struct Child {
    std::size_t job = 0;
    pid_t process = -1;
    int pipe = -1; // its reading end
    std::string received = {};
};

/// Takes the first whole message from received; false when there is none yet.
bool takeMessage(std::string& received, char& kind, std::string& text) {
    if (received.size() < kHeaderBytes) return false;
    std::uint32_t length = 0;
    std::memcpy(&length, received.data() + 1, sizeof length);
    if (received.size() - kHeaderBytes < length) return false;
    kind = received[0];
    text = received.substr(kHeaderBytes, length);
    received.erase(0, kHeaderBytes + length);
    return true;
}

JobEnd waitFor(pid_t process) {
    int status = 0;
    while (::waitpid(process, &status, 0) < 0)
        if (errno != EINTR) return {-1, "lost sight of its process"};
    if (WIFEXITED(status)) return {WEXITSTATUS(status)};
    const int signal = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    const char* const name = ::strsignal(signal);
    return {-1, "its process died of signal " + std::to_string(signal) + " (" +
                    (name ? name : "unknown") + ")"};
}

class Pool {
public:
    Pool(std::size_t count, const std::function<int(std::size_t, JobLine&)>& job,
         const JobEvents& events)
        : shares_(count, 0.0), job_(job), events_(events) {}

    std::size_t running() const { return children_.size(); }
    bool begin(std::size_t job);
    void fail(std::size_t job, const std::string& why) { end(job, {-1, why}); }
    void listen();
    void askToEnd() const {
        for (const Child& child : children_) ::kill(child.process, SIGTERM);
    }

private:
    [[noreturn]] void runChild(std::size_t job, int pipe, pid_t parent);
    bool read(Child& child);
    void take(Child& child);
    void end(std::size_t job, const JobEnd& end);
    void tellProgress() const;

    std::vector<Child> children_;
    std::vector<double> shares_;
    const std::function<int(std::size_t, JobLine&)>& job_;
    const JobEvents& events_;
};

void Pool::runChild(std::size_t job, int pipe, pid_t parent) {
    for (const Child& other : children_) ::close(other.pipe);
    watchInterruptsOfParent();
    ::prctl(PR_SET_PDEATHSIG, SIGTERM);
    if (::getppid() != parent) ::_exit(EXIT_FAILURE); // it died before it could be watched
    int code = EXIT_FAILURE;
    {
        JobLine line(pipe);
        code = job_(job, line);
    }
    ::_exit(code); // what the parent has not written yet is the parent's
}

/// False when the system has no room for another process now.
bool Pool::begin(std::size_t job) {
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0) return false;
    const pid_t parent = ::getpid();
    const pid_t process = ::fork();
    if (process == 0) {
        ::close(ends[0]);
        runChild(job, ends[1], parent);
    }
    ::close(ends[1]);
    if (process < 0) {
        ::close(ends[0]);
        return false;
    }
    children_.push_back({job, process, ends[0]});
    return true;
}

/// False once the child has closed its end.
bool Pool::read(Child& child) {
    char bytes[65536];
    const ssize_t count = ::read(child.pipe, bytes, sizeof bytes);
    if (count < 0) return errno == EINTR || errno == EAGAIN;
    child.received.append(bytes, static_cast<std::size_t>(count));
    take(child);
    return count > 0;
}

void Pool::take(Child& child) {
    char kind = 0;
    std::string text;
    while (takeMessage(child.received, kind, text)) {
        if (kind != JobLine::kShare) {
            if (events_.said) events_.said(child.job, kind, text);
        } else if (text.size() == sizeof(double)) {
            std::memcpy(&shares_[child.job], text.data(), sizeof(double));
            tellProgress();
        }
    }
}

void Pool::end(std::size_t job, const JobEnd& end) {
    shares_[job] = 1.0;
    tellProgress();
    if (events_.ended) events_.ended(job, end);
}

void Pool::tellProgress() const {
    double sum = 0;
    for (const double share : shares_) sum += std::clamp(share, 0.0, 1.0);
    if (events_.progressed) events_.progressed(sum / static_cast<double>(shares_.size()));
}

void Pool::listen() {
    std::vector<pollfd> watched;
    for (const Child& child : children_) watched.push_back({child.pipe, POLLIN, 0});
    if (::poll(watched.data(), watched.size(), kPollMilliseconds) <= 0) return;
    std::vector<Child> ended;
    for (std::size_t i = 0; i < watched.size(); ++i) {
        if (watched[i].revents == 0 || read(children_[i])) continue;
        ended.push_back(children_[i]);
        children_[i].pipe = -1;
    }
    std::erase_if(children_, [](const Child& child) { return child.pipe < 0; });
    for (const Child& child : ended) {
        ::close(child.pipe);
        end(child.job, waitFor(child.process));
    }
}

} // namespace

void JobLine::send(char kind, std::string_view bytes) {
    const auto length = static_cast<std::uint32_t>(bytes.size());
    std::string message(1, kind);
    message.append(reinterpret_cast<const char*>(&length), sizeof length).append(bytes);
    const std::lock_guard whole(writing_);
    for (std::size_t sent = 0; sent < message.size();) {
        const ssize_t count = ::write(descriptor_, message.data() + sent, message.size() - sent);
        if (count < 0 && errno != EINTR) return; // nobody listens any more
        sent += static_cast<std::size_t>(std::max<ssize_t>(count, 0));
    }
}

void JobLine::share(double done) {
    if (done - told_ < kLeastShareStep) return;
    told_ = done;
    send(kShare, {reinterpret_cast<const char*>(&done), sizeof done});
}

void JobLine::say(char kind, std::string_view text) {
    send(kind, text);
}

bool runJobs(std::size_t count, std::size_t atOnce,
             const std::function<int(std::size_t job, JobLine& line)>& job, const JobEvents& events,
             const std::function<bool()>& stop) {
    Pool pool(count, job, events);
    std::size_t next = 0;
    bool stopped = false;
    while (next < count || pool.running() > 0) {
        if (!stopped && stop()) {
            stopped = true;
            pool.askToEnd();
        }
        if (stopped && pool.running() == 0) return false;
        while (!stopped && next < count && pool.running() < std::max<std::size_t>(atOnce, 1)) {
            if (!pool.begin(next)) {
                if (pool.running() > 0) break; // again when one of them has ended
                pool.fail(next, "no process can be started for it; end others");
            }
            ++next;
        }
        if (pool.running() > 0) pool.listen();
    }
    return !stopped;
}

std::size_t processorCount() {
    return std::max(std::thread::hardware_concurrency(), 1u);
}

} // namespace zephyra
