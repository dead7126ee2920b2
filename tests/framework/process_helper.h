#pragma once
// Running programs from the framework tests: a finished run with its exit code and output, or
// a program left running in the background (driven with xdotool).

#include <memory>
#include <string>
#include <vector>

namespace fwtest {

struct RunResult {
    int exitCode = -1;  // 128 + signal when a signal ended it
    bool timedOut = false;
    std::string out, err;
};

struct RunOptions {
    std::string workingDir;   // empty: the current one
    bool withDisplay = true;  // false: DISPLAY removed from the environment
    double timeoutSeconds = 60.0;
};

// Runs argv[0] (a path) with the arguments, output captured, waiting for it to end. A run
// that the X server refused to connect (it happens now and then on a busy shared machine)
// is tried again.
RunResult runProgram(const std::vector<std::string>& argv, const RunOptions& options = {});
// True when the program's standard error says that it could not connect to the display.
bool refusedByDisplay(const std::string& err);

class BackgroundProgram {
  public:
    BackgroundProgram(const std::vector<std::string>& argv, const RunOptions& options = {});
    ~BackgroundProgram();  // kills the program if it still runs
    BackgroundProgram(const BackgroundProgram&) = delete;
    BackgroundProgram& operator=(const BackgroundProgram&) = delete;

    bool started() const { return pid_ > 0; }
    bool running();
    // Waits up to the timeout for the end; the exit code, or -1 when it still runs.
    int wait(double timeoutSeconds);
    std::string out() const;
    std::string err() const;

  private:
    int pid_ = -1;
    int exitCode_ = -1;
    std::string outPath_, errPath_;
};

// A fresh empty folder under the test's working folder.
std::string freshDir(const std::string& name);
std::string readFile(const std::string& path);
bool fileExists(const std::string& path);
std::vector<std::string> listDir(const std::string& dir);
void sleepSeconds(double seconds);

// xdotool with the words given; its standard output.
std::string xdotool(const std::vector<std::string>& words);
// The id of the window whose name matches the regular expression, waiting up to the timeout
// (or until owner, when given, has ended); "" if none.
std::string findWindow(const std::string& nameText, double timeoutSeconds = 30.0,
                       BackgroundProgram* owner = nullptr);
// Starts a program that opens a window whose name matches nameText and returns the window's
// id ("" if it never came); a start that the display refused is tried again.
std::string startWithWindow(std::unique_ptr<BackgroundProgram>& program,
                            const std::vector<std::string>& argv, const RunOptions& options,
                            const std::string& nameText);
// Focuses the window and presses the keys one at a time, with a pause after each.
void pressKeys(const std::string& window, const std::vector<std::string>& keys,
               double pauseSeconds = 0.25);

bool haveDisplay();
bool haveProgram(const char* name);  // on PATH

// Counts the lines of text that equal line exactly.
int countLines(const std::string& text, const std::string& line);
// The lines of text that begin with prefix.
std::vector<std::string> linesStartingWith(const std::string& text, const std::string& prefix);

}  // namespace fwtest
