#include "tests/framework/process_helper.h"

#include <dirent.h>
#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sstream>
#include <thread>

extern char** environ;

namespace fwtest {

namespace {

int counter = 0;

std::vector<std::string> environmentFor(bool withDisplay) {
    std::vector<std::string> env;
    for (char** e = environ; *e != nullptr; ++e) {
        if (!withDisplay && std::strncmp(*e, "DISPLAY=", 8) == 0) continue;
        env.emplace_back(*e);
    }
    return env;
}

int spawn(const std::vector<std::string>& argv, const RunOptions& options,
          const std::string& outPath, const std::string& errPath) {
    std::vector<char*> args;
    for (const std::string& a : argv)
        args.push_back(const_cast<char*>(a.c_str()));
    args.push_back(nullptr);
    std::vector<std::string> envStrings = environmentFor(options.withDisplay);
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

std::string tempPath(const char* what) {
    char cwd[4096];
    if (getcwd(cwd, sizeof cwd) == nullptr) std::strcpy(cwd, "/tmp");
    return std::string(cwd) + "/fwtest." + std::to_string(getpid()) + "." +
           std::to_string(counter++) + "." + what;
}

}  // namespace

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

BackgroundProgram::BackgroundProgram(const std::vector<std::string>& argv,
                                     const RunOptions& options)
    : outPath_(tempPath("out")), errPath_(tempPath("err")) {
    pid_ = spawn(argv, options, outPath_, errPath_);
}

BackgroundProgram::~BackgroundProgram() {
    if (running()) {
        kill(pid_, SIGKILL);
        int status = 0;
        waitpid(pid_, &status, 0);
    }
    unlink(outPath_.c_str());
    unlink(errPath_.c_str());
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
    const auto end = std::chrono::steady_clock::now() +
                     std::chrono::milliseconds(static_cast<long>(timeoutSeconds * 1000));
    while (running()) {
        if (std::chrono::steady_clock::now() > end) return -1;
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

std::string freshDir(const std::string& name) {
    char cwd[4096];
    if (getcwd(cwd, sizeof cwd) == nullptr) std::strcpy(cwd, "/tmp");
    const std::string dir = std::string(cwd) + "/" + name + "." + std::to_string(getpid());
    const std::string remove = "rm -rf '" + dir + "'";
    if (std::system(remove.c_str()) != 0) return dir;
    mkdir(dir.c_str(), 0755);
    return dir;
}

std::string readFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

bool fileExists(const std::string& path) {
    struct stat st;
    return stat(path.c_str(), &st) == 0;
}

std::vector<std::string> listDir(const std::string& dir) {
    std::vector<std::string> names;
    DIR* d = opendir(dir.c_str());
    if (d == nullptr) return names;
    while (dirent* e = readdir(d)) {
        if (std::strcmp(e->d_name, ".") != 0 && std::strcmp(e->d_name, "..") != 0) {
            names.emplace_back(e->d_name);
        }
    }
    closedir(d);
    return names;
}

void sleepSeconds(double seconds) {
    std::this_thread::sleep_for(std::chrono::milliseconds(static_cast<long>(seconds * 1000)));
}

std::string xdotool(const std::vector<std::string>& words) {
    std::vector<std::string> argv{"xdotool"};
    argv.insert(argv.end(), words.begin(), words.end());
    RunOptions options;
    options.timeoutSeconds = 15.0;
    // A busy X server now and then refuses a connection: try again.
    RunResult r;
    for (int attempt = 0; attempt < 5; ++attempt) {
        r = runProgram(argv, options);
        if (r.err.find("Can't open display") == std::string::npos) break;
        sleepSeconds(0.1);
    }
    return r.out;
}

std::string findWindow(const std::string& nameText, double timeoutSeconds,
                       BackgroundProgram* owner) {
    const auto end = std::chrono::steady_clock::now() +
                     std::chrono::milliseconds(static_cast<long>(timeoutSeconds * 1000));
    while (std::chrono::steady_clock::now() < end) {
        if (owner != nullptr && !owner->running()) return "";
        std::string out = xdotool({"search", "--onlyvisible", "--name", nameText});
        const std::size_t eol = out.find('\n');
        if (eol != std::string::npos && eol > 0) return out.substr(0, eol);
        sleepSeconds(0.1);
    }
    return "";
}

std::string startWithWindow(std::unique_ptr<BackgroundProgram>& program,
                            const std::vector<std::string>& argv, const RunOptions& options,
                            const std::string& nameText) {
    std::string window;
    for (int attempt = 0; attempt < 4; ++attempt) {
        program = std::make_unique<BackgroundProgram>(argv, options);
        window = findWindow(nameText, 30.0, program.get());
        if (!window.empty() || !refusedByDisplay(program->err())) break;
        sleepSeconds(0.2);
    }
    return window;
}

void pressKeys(const std::string& window, const std::vector<std::string>& keys, double pause) {
    xdotool({"windowfocus", "--sync", window});
    for (const std::string& k : keys) {
        xdotool({"key", k});
        sleepSeconds(pause);
    }
}

bool haveDisplay() {
    const char* d = std::getenv("DISPLAY");
    return d != nullptr && *d != '\0';
}

bool haveProgram(const char* name) {
    const std::string command = std::string("command -v ") + name + " >/dev/null 2>&1";
    return std::system(command.c_str()) == 0;
}

int countLines(const std::string& text, const std::string& line) {
    int n = 0;
    std::istringstream in(text);
    std::string l;
    while (std::getline(in, l))
        n += l == line ? 1 : 0;
    return n;
}

std::vector<std::string> linesStartingWith(const std::string& text, const std::string& prefix) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    std::string l;
    while (std::getline(in, l)) {
        if (l.compare(0, prefix.size(), prefix) == 0) lines.push_back(l);
    }
    return lines;
}

}  // namespace fwtest
