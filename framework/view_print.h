#pragma once
// The printed form of the current view (key "i").

#include <string>

#include "common_package/math/src/view.h"

// "\nCurrent View\n", the view's numbers with five decimals, the modelview and projection
// matrices in storage order (four "%7.3f" a line) and "Viewport: %d %d %d %d\n".
std::string currentViewText(const View& view, const double modelview[16],
                            const double projection[16], const int viewport[4]);
