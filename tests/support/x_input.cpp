#include "tests/support/x_input.h"

#include <chrono>

namespace testsupport {

std::string xdotool(const std::vector<std::string>& words, bool* ok) {
    std::vector<std::string> argv{"xdotool"};
    argv.insert(argv.end(), words.begin(), words.end());
    RunOptions options;
    options.timeoutSeconds = 15.0;
    RunResult r;
    for (int attempt = 0; attempt < 5; ++attempt) {
        r = runProgram(argv, options);
        if (r.err.find("Can't open display") == std::string::npos) break;
        sleepSeconds(0.1);
    }
    if (ok != nullptr) *ok = r.exitCode == 0;
    return r.out;
}

std::string findWindow(const std::string& nameText, double timeoutSeconds,
                       BackgroundProgram* owner) {
    const auto end =
        std::chrono::steady_clock::now() + std::chrono::duration<double>(timeoutSeconds);
    do {
        if (owner != nullptr && !owner->running()) return "";
        const std::string ids = xdotool({"search", "--onlyvisible", "--name", nameText});
        const std::size_t eol = ids.find('\n');
        if (eol != std::string::npos && eol > 0) return ids.substr(0, eol);
        sleepSeconds(0.1);
    } while (std::chrono::steady_clock::now() < end);
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

void pressKeys(const std::string& window, const std::vector<std::string>& keys,
               double pauseSeconds) {
    xdotool({"windowfocus", "--sync", window});
    for (const std::string& k : keys) {
        xdotool({"key", k});
        sleepSeconds(pauseSeconds);
    }
}

}  // namespace testsupport
