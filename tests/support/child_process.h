#pragma once
// Running programs from tests: a run to its end with its exit code and output, or a program
// left running in the background (and driven through the X server, see x_input.h).

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace testsupport {

// An environment change for a run: a name with a value sets it, without one removes it.
using EnvChange = std::pair<std::string, std::optional<std::string>>;

struct RunOptions {
    std::string workingDir;        // empty: this process's
    std::vector<EnvChange> env;    // changes to this process's environment
    bool withDisplay = true;       // false: DISPLAY removed
    double timeoutSeconds = 60.0;  // for runProgram
};

struct RunResult {
    int exitCode = -1;  // 128 + the signal when a signal ended it; -1 when it timed out
    bool timedOut = false;
    std::string out, err;
};

// The skyrama program of this build.
std::string skyramaProgram();

// A program started with argv (argv[0] a path, or a name looked up on PATH), standard input
// from /dev/null, standard output and error kept in files of the temporary folder.
class BackgroundProgram {
  public:
    explicit BackgroundProgram(const std::vector<std::string>& argv,
                               const RunOptions& options = {});
    ~BackgroundProgram();  // kills the program if it still runs, removes its output files
    BackgroundProgram(const BackgroundProgram&) = delete;
    BackgroundProgram& operator=(const BackgroundProgram&) = delete;

    bool started() const { return pid_ > 0; }
    bool running();
    // Waits up to the timeout for the end: the exit code, or -1 while it still runs.
    int wait(double timeoutSeconds);
    std::string out() const;
    std::string err() const;
    // Waits until the standard output holds text; false after the timeout or the end.
    bool waitForOut(const std::string& text, double timeoutSeconds);

  private:
    int pid_ = -1;
    int exitCode_ = -1;
    std::string outPath_, errPath_;
};

// Runs the program to its end (or the timeout, when it is killed). A run that the X server
// refused (it happens now and then on a busy machine) is tried again.
RunResult runProgram(const std::vector<std::string>& argv, const RunOptions& options = {});
// True when a program's standard error says that it could not connect to the display.
bool refusedByDisplay(const std::string& err);

bool haveDisplay();
// Keeps one connection to the X server open for the rest of the test process: an X server
// started without -noreset resets when its last client leaves, and a program connecting
// during the reset fails.
void holdDisplay();
bool haveProgram(const std::string& name);  // on PATH
void sleepSeconds(double seconds);

}  // namespace testsupport
