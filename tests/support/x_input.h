#pragma once
// Driving windows through the X server with xdotool, as a user would: finding a program's
// window, focusing it, pressing keys.

#include <memory>
#include <string>
#include <vector>

#include "tests/support/child_process.h"

namespace testsupport {

// xdotool with these words (no shell in between); its standard output. ok, when given, tells
// whether it succeeded. A connection the X server refused is tried again.
std::string xdotool(const std::vector<std::string>& words, bool* ok = nullptr);

// The id of a visible window whose name matches the regular expression, waiting up to the
// timeout (or until owner, when given, has ended); "" if none.
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

}  // namespace testsupport
