#include "tests/support/child_process.h"

#include <X11/Xlib.h>
#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <thread>

#include "tests/support/scratch_files.h"

extern char** environ;

namespace testsupport {

namespace {

int outputCounter = 0;

std::string outputPath(const char* what) {
    std::error_code error;
    std::filesystem::path dir = std::filesystem::temp_directory_path(error);
    if (error) dir = "/tmp";
    return (dir / ("skyrama-test." + std::to_string(getpid()) + "." +
                   std::to_string(outputCounter++) + "." + what))
        .string();
}

std::vector<std::string> environmentFor(const RunOptions& options) {
    std::vector<EnvChange> changes = options.env;
    if (!options.withDisplay) changes.emplace_back("DISPLAY", std::nullopt);
    std::vector<std::string> env;
    for (char** e = environ; *e != nullptr; ++e) {
        const std::string entry = *e;
        bool changed = false;
        for (const EnvChange& c : changes)
            changed = changed || entry.compare(0, c.first.size() + 1, c.first + "=") == 0;
        if (!changed) env.push_back(entry);
    }
    for (const EnvChange& c : changes) {
        if (c.second) env.push_back(c.first + "=" + *c.second);
    }
    return env;
}

int spawn(const std::vector<std::string>& argv, const RunOptions& options,
          const std::string& outPath, const std::string& errPath) {
    if (argv.empty()) return -1;
    std::vector<std::string> argStrings = argv;
    std::vector<char*> args;
    for (std::string& a : argStrings)
        args.push_back(a.data());
    args.push_back(nullptr);
    std::vector<std::string> envStrings = environmentFor(options);
    std::vector<char*> env;
    for (std::string& e : envStrings)
        env.push_back(e.data());
    env.push_back(nullptr);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, 1, outPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC,
                                     0644);
    posix_spawn_file_actions_addopen(&actions, 2, errPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC,
                                     0644);
    if (!options.workingDir.empty()) {
        posix_spawn_file_actions_addchdir_np(&actions, options.workingDir.c_str());
    }
    pid_t pid = -1;
    const int rc = posix_spawnp(&pid, args[0], &actions, nullptr, args.data(), env.data());
    posix_spawn_file_actions_destroy(&actions);
    return rc == 0 ? pid : -1;
}

int decodeStatus(int status) {
    if (WIFEXITED(status)) return WEXITSTATUS(status);
    if (WIFSIGNALED(status)) return 128 + WTERMSIG(status);
    return -1;
}

using Clock = std::chrono::steady_clock;

Clock::time_point after(double seconds) {
    return Clock::now() +
           std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(seconds));
}

}  // namespace

std::string skyramaProgram() {
    return SKYRAMA_BINARY_DIR "/skyrama";
}

BackgroundProgram::BackgroundProgram(const std::vector<std::string>& argv,
                                     const RunOptions& options)
    : outPath_(outputPath("out")), errPath_(outputPath("err")) {
    pid_ = spawn(argv, options, outPath_, errPath_);
}

BackgroundProgram::~BackgroundProgram() {
    if (running()) {
        kill(pid_, SIGKILL);
        int status = 0;
        waitpid(pid_, &status, 0);
    }
    std::error_code error;
    std::filesystem::remove(outPath_, error);
    std::filesystem::remove(errPath_, error);
}

bool BackgroundProgram::running() {
    if (pid_ <= 0 || exitCode_ != -1) return false;
    int status = 0;
    const pid_t r = waitpid(pid_, &status, WNOHANG);
    if (r == pid_) {
        exitCode_ = decodeStatus(status);
        return false;
    }
    return r == 0;
}

int BackgroundProgram::wait(double timeoutSeconds) {
    const auto end = after(timeoutSeconds);
    while (running()) {
        if (Clock::now() > end) return -1;
        sleepSeconds(0.02);
    }
    return exitCode_;
}

std::string BackgroundProgram::out() const {
    return readFile(outPath_);
}

std::string BackgroundProgram::err() const {
    return readFile(errPath_);
}

bool BackgroundProgram::waitForOut(const std::string& text, double timeoutSeconds) {
    const auto end = after(timeoutSeconds);
    while (out().find(text) == std::string::npos) {
        if (Clock::now() > end || !running()) return out().find(text) != std::string::npos;
        sleepSeconds(0.05);
    }
    return true;
}

RunResult runProgram(const std::vector<std::string>& argv, const RunOptions& options) {
    RunResult r;
    for (int attempt = 0; attempt < 4; ++attempt) {
        BackgroundProgram p(argv, options);
        r.exitCode = p.wait(options.timeoutSeconds);
        r.timedOut = r.exitCode == -1 && p.running();
        r.out = p.out();
        r.err = p.err();
        if (!options.withDisplay || !refusedByDisplay(r.err)) break;
        sleepSeconds(0.2);
    }
    return r;
}

bool refusedByDisplay(const std::string& err) {
    return err.find("failed to open display") != std::string::npos;
}

bool haveDisplay() {
    const char* d = std::getenv("DISPLAY");
    return d != nullptr && *d != '\0';
}

void holdDisplay() {
    static Display* held = XOpenDisplay(nullptr);
    (void)held;
}

bool haveProgram(const std::string& name) {
    const char* path = std::getenv("PATH");
    if (path == nullptr) return false;
    const std::string dirs = path;
    for (std::size_t start = 0; start <= dirs.size();) {
        std::size_t end = dirs.find(':', start);
        if (end == std::string::npos) end = dirs.size();
        const std::string dir = end > start ? dirs.substr(start, end - start) : ".";
        if (access((dir + "/" + name).c_str(), X_OK) == 0) return true;
        start = end + 1;
    }
    return false;
}

void sleepSeconds(double seconds) {
    std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
}

}  // namespace testsupport
