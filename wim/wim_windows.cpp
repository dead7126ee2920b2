#include "wim/wim_windows.h"

#include <cstdio>

WimState mainWimState() {
    return WimState::None;
}

void toggleMainWim(double logScale) {
    (void)logScale;
    std::fprintf(stderr, "the world-in-miniature view is not available in this build\n");
}

void addHistoryView(const View& view) {
    (void)view;
}
