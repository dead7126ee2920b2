#include "platform/command_runner.h"

#include <spawn.h>
#include <sys/wait.h>

#include <cerrno>

extern char** environ;

namespace platform {

int runCommand(const std::vector<std::string>& words) {
    if (words.empty() || words[0].empty()) return -1;
    std::vector<char*> argv;
    argv.reserve(words.size() + 1);
    for (const std::string& w : words)
        argv.push_back(const_cast<char*>(w.c_str()));
    argv.push_back(nullptr);

    pid_t pid = 0;
    if (posix_spawnp(&pid, argv[0], nullptr, nullptr, argv.data(), environ) != 0) return -1;

    int status = 0;
    while (waitpid(pid, &status, 0) < 0) {
        if (errno != EINTR) return -1;
    }
    if (WIFEXITED(status)) {
        // posix_spawnp may report a missing program only through the child's exit code 127.
        return WEXITSTATUS(status);
    }
    if (WIFSIGNALED(status)) return 128 + WTERMSIG(status);
    return -1;
}

}  // namespace platform
