#pragma once
// The command line: options, then the movie script, then the words handed to the scene.

#include <cstdio>
#include <string>

struct CommandLine {
    int jitterSize = 1;
    bool dumpMode = false;
    std::string movieFileHead;
    int frameNumOffset = 0;
    int frameSkip = 0;
    bool doubleRate = false;
    bool fullscreen = false;
    bool gzipFrames = false;
    std::string scriptFileName;
    int firstSceneArg = 0;  // index in argv of the first word after the script
};

// Parses argv. Returns 0 and fills out, or -1 with error set to the message to print before
// the usage text (empty for a bare command line). Options are matched as whole words, in any
// order and number, until the first word that is no option; that word is the script.
int parseCommandLine(int argc, char** argv, CommandLine& out, std::string& error);

// The usage text, with the program path filled in.
std::string usageText(const char* program);

// "skyrama 1.0 [%s]" with the third word of the command line, or with the script's name
// when the command line has fewer than three words.
std::string titleFor(int argc, char** argv, const std::string& scriptFileName);

// The usual decimal conversion of a command-line word: leading blanks, an optional sign and
// the leading digits; no digits gives 0. Values beyond int are held at INT_MIN / INT_MAX.
int decimalValue(const char* word);
