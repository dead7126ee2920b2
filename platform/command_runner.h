#pragma once
// Running an external program and waiting for it, without a command interpreter: the words
// go to the program as they are, so blanks or shell characters in a file name do nothing.

#include <string>
#include <vector>

namespace platform {

// Runs words[0] (looked up on PATH) with words as its arguments and waits for it. Returns its
// exit status, 128 + the signal number when a signal ended it, or -1 when it could not be
// started (no words, or no such program).
int runCommand(const std::vector<std::string>& words);

}  // namespace platform
