// Texts the framework shows or prints: the frame-number overlay and the current-view printout.

#include <gtest/gtest.h>

#include "framework/frame_overlay.h"
#include "framework/view_print.h"

TEST(FrameInfoText, WholeFramesHalfFramesAndKeyFrames) {
    EXPECT_EQ("Frame 3/20", frameInfoText(3.0, 21, false, false));
    EXPECT_EQ("Frame 3/20 (*)", frameInfoText(3.7, 21, false, true));
    EXPECT_EQ("Frame 2.5/18", frameInfoText(2.5, 10, true, false));
    EXPECT_EQ("Frame 0.0/0 (*)", frameInfoText(0.0, 1, true, true));
}

TEST(CurrentViewText, Layout) {
    View v;
    v.viewPos = Phc{0.0, -0.25, 1.0, 0.47712125472};
    v.viewDir = {0.0, 0.0, -1.0};
    v.viewUp = {0.0, 1.0, 0.0};
    v.fovy = 45.0;
    v.aspect = 4.0 / 3.0;
    const double modelview[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0.5, 0, -1, 1};
    const double projection[16] = {
        1.8106601717798, 0, 0, 0, 0, 2.4142135623731, 0, 0, 0, 0, -1.000002, -1, 0, 0,
        -0.02000002,     0};
    const int viewport[4] = {0, 0, 96, 72};
    EXPECT_EQ(
        "\nCurrent View\n"
        "viewPos   = 0.00000 -0.25000 1.00000 0.47712\n"
        "viewDir   = 0.00000 0.00000 -1.00000\n"
        "viewUp    = 0.00000 1.00000 0.00000\n"
        "fovy      = 45.00000\n"
        "aspect    = 1.33333\n"
        "Modelview:\n"
        "  1.000   0.000   0.000   0.000\n"
        "  0.000   1.000   0.000   0.000\n"
        "  0.000   0.000   1.000   0.000\n"
        "  0.500   0.000  -1.000   1.000\n"
        "Projection:\n"
        "  1.811   0.000   0.000   0.000\n"
        "  0.000   2.414   0.000   0.000\n"
        "  0.000   0.000  -1.000  -1.000\n"
        "  0.000   0.000  -0.020   0.000\n"
        "Viewport: 0 0 96 72\n",
        currentViewText(v, modelview, projection, viewport));
}
