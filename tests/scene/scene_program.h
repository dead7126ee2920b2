#pragma once
// Running the skyrama program from the scene tests: a run to its end with its output, or a
// program left running and driven through the X server with xdotool.

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace scenetest {

// Environment changes for a run: a name with a value sets it, without one removes it.
using EnvChange = std::pair<std::string, std::optional<std::string>>;

struct Launch {
    std::vector<std::string> args;  // after the program path
    std::string workingDir;
    std::vector<EnvChange> env;
};

// The skyrama program of this build.
std::string skyramaPath();

class Program {
  public:
    explicit Program(const Launch& launch);
    ~Program();  // kills the program if it still runs
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    bool started() const { return pid_ > 0; }
    bool running();
    // The exit code after waiting up to the timeout; -1 while it still runs.
    int wait(double seconds);
    std::string out() const;
    std::string err() const;
    // Waits until the standard output holds text; false after the timeout.
    bool waitForOut(const std::string& text, double seconds);

  private:
    int pid_ = -1;
    int exitCode_ = -1;
    std::string outPath_, errPath_;
};

struct Finished {
    int exitCode = -1;
    std::string out, err;
};
Finished runToEnd(const Launch& launch, double seconds = 60.0);

bool haveDisplay();
// Keeps one connection to the X server open for the rest of the test process: an X server
// resets when its last client leaves, and a program connecting during the reset fails.
void holdDisplay();
bool haveProgram(const char* name);
void sleepSeconds(double seconds);
std::string freshDir(const std::string& name);
// Removes a folder made by freshDir with everything in it.
void removeDir(const std::string& dir);
void writeFile(const std::string& path, const std::string& content);
std::string readFile(const std::string& path);

// xdotool with these words; its standard output.
std::string xdotool(const std::vector<std::string>& words);
// The id of a window whose name contains text, waiting up to the timeout ("" if none).
std::string findWindow(const std::string& text, double seconds = 15.0);

}  // namespace scenetest
