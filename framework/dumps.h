#pragma once
// Saving what the framework draws: single screen dumps and whole-movie dumps as PNM files.

#include <string>

// Writes one RGB frame of winWidth x winHeight bytes (rows top first) to "%s.%04d.pnm" with
// head and number, then gzips it when gzipFrames is on. An empty head writes nothing; a write
// failure ends the process with exit code 1.
void dumpFrame(const std::string& head, long long number, const unsigned char* image);

// Renders and writes every movie frame from frameSkip on (anti-aliased with jitterSize > 1);
// silent leaves out the progress lines. Does nothing without a movie.
void dumpMovie(bool silent);

// Writes the picture of the main window's 3-D viewport (never the panel or message boxes) to
// fileName, or to "screen.%04d.pnm" with the next number when fileName is null or empty.
// Returns 1, or -1 after "Faled to dump screen to file [%s].\n".
int screenDump(const char* fileName);
