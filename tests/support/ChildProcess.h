#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

// A program run by a test as a user runs it: no input, its output and errors
// kept in files. Killed and reaped if the test leaves it running.
class ChildProcess {
public:
    // command[0] is looked up in PATH.
    explicit ChildProcess(std::vector<std::string> command);
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    void signal(int number);
    // The exit code, 128 + the signal's number if a signal ended it; nothing
    // if it is still running after limit.
    std::optional<int> wait(std::chrono::milliseconds limit = std::chrono::minutes(5));
    std::string output() const { return read("out"); }
    std::string errors() const { return read("err"); }

private:
    std::string read(const char* name) const;

    std::string directory;
    pid_t pid = -1;
    std::optional<int> exitCode;
};
