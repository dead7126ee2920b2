// The frame-number overlay's text (the view printout is checked on the running program).

#include <gtest/gtest.h>

#include "framework/frame_overlay.h"

TEST(FrameInfoText, WholeFramesHalfFramesAndKeyFrames) {
    EXPECT_EQ("Frame 3/20", frameInfoText(3.0, 21, false, false));
    EXPECT_EQ("Frame 3/20 (*)", frameInfoText(3.7, 21, false, true));
    EXPECT_EQ("Frame 2.5/18", frameInfoText(2.5, 10, true, false));
    EXPECT_EQ("Frame 0.0/0 (*)", frameInfoText(0.0, 1, true, true));
}
