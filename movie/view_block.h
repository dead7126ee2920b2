#pragma once
// The five lines of a camera in a movie script: viewPos, viewDir, viewUp, fovy, aspect.

#include "common_package/math/src/view.h"
#include "movie/script_lines.h"

// Largest magnitude accepted for a number of a view line: squares and sums of three such
// numbers still fit a double, so lengths and normalisation stay finite.
constexpr double kViewNumberMax = 1e150;

// Reads the next five data lines into view (direction and up normalised): 1, or -1 after
// the message.
int readViewBlock(ScriptLines& lines, View& view);
