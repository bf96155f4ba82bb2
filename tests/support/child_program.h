// ChildProgram, HiddenDisplay: programs that run beside a test, and are ended with it.
#pragma once

#include "tests/support/testing.h"

#include <csignal>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace zephyra {

class ChildProgram {
public:
    using Words = std::vector<std::string>;

    /// words[0] is looked for along PATH; variables ("NAME=value", or "NAME" to unset) change its
    /// environment. What it prints goes to log.
    ChildProgram(const Words& words, const Words& variables, fs::path log) : log_(std::move(log)) {
        std::vector<char*> arguments;
        for (const std::string& word : words) arguments.push_back(const_cast<char*>(word.c_str()));
        arguments.push_back(nullptr);
        if ((pid_ = ::fork()) != 0) return;
        for (const std::string& variable : variables) {
            const std::size_t sign = variable.find('=');
            if (sign == std::string::npos)
                ::unsetenv(variable.c_str());
            else
                ::setenv(variable.substr(0, sign).c_str(), variable.c_str() + sign + 1, 1);
        }
        const int file = ::open(log_.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
        ::dup2(file, STDOUT_FILENO);
        ::dup2(file, STDERR_FILENO);
        ::execvp(arguments[0], arguments.data());
        ::_exit(127);
    }
    ChildProgram(const ChildProgram&) = delete;
    ChildProgram& operator=(const ChildProgram&) = delete;
    ~ChildProgram() { end(SIGKILL); }

    std::string output() const { return readText(log_); }
    bool says(const std::string& text) const {
        return comesTrue([&] { return output().find(text) != std::string::npos; });
    }
    bool runs() { return !code_ && ::waitpid(pid_, &status_, WNOHANG) == 0; }

    void send(int signal) const {
        if (pid_ > 0 && !code_) ::kill(pid_, signal);
    }
    /// Its exit code after signal (0 for none), or minus the signal that ended it.
    int end(int signal) {
        if (code_) return *code_;
        if (pid_ < 0) return -1; // could not be started; kill(-1) would end everybody's
        if (signal) ::kill(pid_, signal);
        ::waitpid(pid_, &status_, 0);
        code_ = WIFEXITED(status_) ? WEXITSTATUS(status_) : -WTERMSIG(status_);
        return *code_;
    }

private:
    fs::path log_;
    pid_t pid_ = -1;
    int status_ = 0;
    std::optional<int> code_;
};

/// An X server that nobody sees, of a number that is free.
class HiddenDisplay {
public:
    /// options: more of the server's, "-extension MIT-SHM".
    explicit HiddenDisplay(const std::string& options = {}) : options_(options) {}
    /// ":7"; empty where Xvfb cannot run.
    std::string name() {
        if (std::system("command -v Xvfb >/dev/null") != 0) return "";
        comesTrue([this] { return readText(folder_ / "number").ends_with('\n'); });
        std::istringstream number(readText(folder_ / "number"));
        std::string digits;
        number >> digits;
        return digits.empty() ? "" : ":" + digits;
    }
    void kill() { server_.end(SIGKILL); }
    ~HiddenDisplay() { server_.end(SIGTERM); } // a killed one leaves its lock

private:
    const TemporaryFolder folder_;
    const std::string options_;
    ChildProgram server_{
        {"sh", "-c",
         "exec Xvfb " + options_ + " -noreset -displayfd 3 3>" + (folder_ / "number").string()},
        {},
        folder_ / "log"};
};

} // namespace zephyra
