#include "ChildProcess.h"

#include <csignal>
#include <fcntl.h>
#include <fstream>
#include <iterator>
#include <spawn.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

extern char** environ;

ChildProcess::ChildProcess(std::vector<std::string> command) {
    char pattern[] = "/tmp/zel-child-XXXXXX";
    if (const char* made = mkdtemp(pattern)) directory = made;
    std::vector<char*> argv;
    for (std::string& word : command) argv.push_back(word.data());
    argv.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    for (auto [fd, name] : {std::pair{STDOUT_FILENO, "/out"}, {STDERR_FILENO, "/err"}})
        posix_spawn_file_actions_addopen(&actions, fd, (directory + name).c_str(),
                                         O_WRONLY | O_CREAT | O_TRUNC, 0600);
    if (posix_spawnp(&pid, argv[0], &actions, nullptr, argv.data(), environ) != 0) pid = -1;
    posix_spawn_file_actions_destroy(&actions);
}

ChildProcess::~ChildProcess() {
    if (pid > 0 && !exitCode) {
        kill(pid, SIGKILL);
        waitpid(pid, nullptr, 0);
    }
    for (const char* name : {"/out", "/err"}) unlink((directory + name).c_str());
    rmdir(directory.c_str());
}

void ChildProcess::signal(int number) {
    if (pid > 0 && !exitCode) kill(pid, number);
}

std::optional<int> ChildProcess::wait(std::chrono::milliseconds limit) {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    int status = 0;
    while (pid > 0 && !exitCode) {
        if (waitpid(pid, &status, WNOHANG) == pid)
            exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
        else if (std::chrono::steady_clock::now() > deadline)
            break;
        else
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return exitCode;
}

std::string ChildProcess::read(const char* name) const {
    std::ifstream in(directory + "/" + name, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}
