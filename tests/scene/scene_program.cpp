#include "tests/scene/scene_program.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <X11/Xlib.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>

extern char** environ;

namespace scenetest {

namespace {

int fileCounter = 0;

std::string tempPath(const char* what) {
    return std::filesystem::current_path().string() + "/scenetest." + std::to_string(getpid()) +
           "." + std::to_string(fileCounter++) + "." + what;
}

std::vector<std::string> environmentWith(const std::vector<EnvChange>& changes) {
    std::vector<std::string> env;
    for (char** e = environ; *e != nullptr; ++e) {
        const std::string entry = *e;
        bool replaced = false;
        for (const EnvChange& c : changes)
            replaced = replaced || entry.compare(0, c.first.size() + 1, c.first + "=") == 0;
        if (!replaced) env.push_back(entry);
    }
    for (const EnvChange& c : changes) {
        if (c.second) env.push_back(c.first + "=" + *c.second);
    }
    return env;
}

int decode(int status) {
    if (WIFEXITED(status)) return WEXITSTATUS(status);
    if (WIFSIGNALED(status)) return 128 + WTERMSIG(status);
    return -1;
}

}  // namespace

std::string skyramaPath() {
    return SKYRAMA_BINARY_DIR "/skyrama";
}

Program::Program(const Launch& launch) : outPath_(tempPath("out")), errPath_(tempPath("err")) {
    std::vector<std::string> argv{skyramaPath()};
    argv.insert(argv.end(), launch.args.begin(), launch.args.end());
    std::vector<char*> args;
    for (std::string& a : argv)
        args.push_back(a.data());
    args.push_back(nullptr);
    std::vector<std::string> envStrings = environmentWith(launch.env);
    std::vector<char*> env;
    for (std::string& e : envStrings)
        env.push_back(e.data());
    env.push_back(nullptr);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, 1, outPath_.c_str(), O_WRONLY | O_CREAT | O_TRUNC,
                                     0644);
    posix_spawn_file_actions_addopen(&actions, 2, errPath_.c_str(), O_WRONLY | O_CREAT | O_TRUNC,
                                     0644);
    if (!launch.workingDir.empty())
        posix_spawn_file_actions_addchdir_np(&actions, launch.workingDir.c_str());
    pid_t pid = -1;
    if (posix_spawn(&pid, args[0], &actions, nullptr, args.data(), env.data()) == 0) pid_ = pid;
    posix_spawn_file_actions_destroy(&actions);
}

Program::~Program() {
    if (running()) {
        kill(pid_, SIGKILL);
        int status = 0;
        waitpid(pid_, &status, 0);
    }
    std::remove(outPath_.c_str());
    std::remove(errPath_.c_str());
}

bool Program::running() {
    if (pid_ <= 0 || exitCode_ != -1) return false;
    int status = 0;
    const pid_t r = waitpid(pid_, &status, WNOHANG);
    if (r == pid_) {
        exitCode_ = decode(status);
        return false;
    }
    return r == 0;
}

int Program::wait(double seconds) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
    while (running()) {
        if (std::chrono::steady_clock::now() > end) return -1;
        sleepSeconds(0.02);
    }
    return exitCode_;
}

std::string Program::out() const {
    return readFile(outPath_);
}

std::string Program::err() const {
    return readFile(errPath_);
}

bool Program::waitForOut(const std::string& text, double seconds) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
    while (out().find(text) == std::string::npos) {
        if (std::chrono::steady_clock::now() > end || !running()) {
            return out().find(text) != std::string::npos;
        }
        sleepSeconds(0.05);
    }
    return true;
}

Finished runToEnd(const Launch& launch, double seconds) {
    Program p(launch);
    Finished f;
    f.exitCode = p.wait(seconds);
    f.out = p.out();
    f.err = p.err();
    return f;
}

bool haveDisplay() {
    const char* d = std::getenv("DISPLAY");
    return d != nullptr && *d != '\0';
}

void holdDisplay() {
    static Display* held = XOpenDisplay(nullptr);
    (void)held;
}

bool haveProgram(const char* name) {
    const std::string command = std::string("command -v ") + name + " >/dev/null 2>&1";
    return std::system(command.c_str()) == 0;
}

void sleepSeconds(double seconds) {
    std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
}

std::string freshDir(const std::string& name) {
    const std::filesystem::path dir =
        std::filesystem::current_path() / (name + "." + std::to_string(getpid()));
    std::error_code error;
    std::filesystem::remove_all(dir, error);
    std::filesystem::create_directories(dir, error);
    return dir.string();
}

void removeDir(const std::string& dir) {
    std::error_code error;
    std::filesystem::remove_all(dir, error);
}

void writeFile(const std::string& path, const std::string& content) {
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    std::ofstream out(path, std::ios::binary);
    out << content;
}

std::string readFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

std::string xdotool(const std::vector<std::string>& words) {
    std::string command = "xdotool";
    for (const std::string& w : words)
        command += " '" + w + "'";
    std::string result;
    if (FILE* pipe = popen(command.c_str(), "r")) {
        char buffer[256];
        while (std::fgets(buffer, sizeof buffer, pipe) != nullptr)
            result += buffer;
        pclose(pipe);
    }
    return result;
}

std::string findWindow(const std::string& text, double seconds) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
    do {
        std::string ids = xdotool({"search", "--name", text});
        std::istringstream lines(ids);
        std::string id;
        if (std::getline(lines, id) && !id.empty()) return id;
        sleepSeconds(0.1);
    } while (std::chrono::steady_clock::now() < end);
    return "";
}

}  // namespace scenetest
