// Playback and frame navigation arithmetic (every-frame and real-time advance, the end of the
// movie, F-key jumps, keyframe steps), the frame-number text and the jitter tables.

#include <gtest/gtest.h>

#include <algorithm>

#include "framework/frame_overlay.h"
#include "framework/framework_state.h"
#include "framework/jitter_tables.h"
#include "framework/playback.h"

namespace {

PlaybackState playing(int count, bool everyFrame, double frame = 0.0, double clock = kNotStarted) {
    return {frame, count, everyFrame, false, clock};
}

}  // namespace

TEST(Playback, EveryFrameStepsToTheLastFrameThenStopsOrLoops) {
    PlaybackState s = playing(1, true, 1.0);
    EXPECT_EQ(PlaybackResult::Advanced, advancePlayback(s, 0.0, 3));
    EXPECT_EQ(PlaybackResult::Stopped, advancePlayback(s, 0.0, 3));
    EXPECT_EQ(2.0, s.currFrame);
    EXPECT_EQ(0, s.playCount);
    PlaybackState half{0.0, 1, true, true, kNotStarted};
    advancePlayback(half, 0.0, 3);
    EXPECT_EQ(0.5, half.currFrame);
    PlaybackState loop = playing(kPlayForever, true, 2.0);
    EXPECT_EQ(PlaybackResult::Advanced, advancePlayback(loop, 0.0, 3));
    EXPECT_EQ(0.0, loop.currFrame);
    EXPECT_EQ(kPlayForever - 1, loop.playCount);
}

TEST(Playback, RealTimeRunsAtThirtyFramesASecondThenStopsOrLoops) {
    PlaybackState s = playing(1, false);
    EXPECT_EQ(PlaybackResult::Unchanged, advancePlayback(s, 100.0, 100));  // starts the clock
    // 10 ms: one half frame, no whole step yet; the clock must stay.
    EXPECT_EQ(PlaybackResult::Unchanged, advancePlayback(s, 100.01, 100));
    EXPECT_EQ(PlaybackResult::Advanced, advancePlayback(s, 100.1, 100));  // 6 half frames
    EXPECT_EQ(3.0, s.currFrame);

    PlaybackState once = playing(1, false, 1.0, 0.0);
    EXPECT_EQ(PlaybackResult::Advanced, advancePlayback(once, 10.0, 3));  // the last frame shows
    EXPECT_EQ(PlaybackResult::Stopped, advancePlayback(once, 11.0, 3));
    EXPECT_EQ(2.0, once.currFrame);
    PlaybackState loop = playing(kPlayForever, false, 2.0, 0.0);
    EXPECT_EQ(PlaybackResult::Advanced, advancePlayback(loop, 1.0, 3));
    EXPECT_EQ(0.0, loop.currFrame);
    PlaybackState jump = playing(1, false, 0.0, 0.0);  // a clock jump does not overflow
    EXPECT_EQ(PlaybackResult::Advanced, advancePlayback(jump, 1e300, 50));
    EXPECT_EQ(49.0, jump.currFrame);
}

TEST(FrameKeys, JumpsStepsAndKeyFrames) {
    const int jumps[][3] = {{5, 21, 8}, {10, 21, 20}, {7, 1, 0},
                            {2, 3, 1},  {10, 3, 2},   {10, 100000, 99999}};
    for (const auto& [key, frames, expected] : jumps)
        EXPECT_EQ(expected, jumpFrame(key, frames)) << key << " of " << frames;
    EXPECT_EQ(0.0, stepFrame(0.5, -1.0, 10));
    EXPECT_EQ(9.0, stepFrame(7.0, 5.0, 10));

    MovieRecord movie;
    ASSERT_EQ(
        1, movie.loadRecord(SKYRAMA_SOURCE_DIR "/tests/framework/scripts/twentyone_frames.scp", 1));
    const double steps[][3] = {{0, 10, 0}, {5, 10, 0}, {10, 20, 0}, {15, 20, 10}, {20, 20, 10}};
    for (const auto& [frame, next, previous] : steps) {
        EXPECT_EQ(next, nextKeyFrame(movie, frame)) << frame;
        EXPECT_EQ(previous, previousKeyFrame(movie, frame)) << frame;
    }
    EXPECT_TRUE(onKeyFrame(movie, 10.0) && !onKeyFrame(movie, 10.5) && !onKeyFrame(movie, 25.0));
}

TEST(FrameInfoText, WholeFramesHalfFramesAndKeyFrames) {
    EXPECT_EQ("Frame 3/20", frameInfoText(3.0, 21, false, false));
    EXPECT_EQ("Frame 3/20 (*)", frameInfoText(3.7, 21, false, true));
    EXPECT_EQ("Frame 2.5/18", frameInfoText(2.5, 10, true, false));
}

TEST(JitterTables, EverySupportedSizeHasItsOffsetsWithinAPixel) {
    for (int size : supportedJitterSizes()) {
        const JitterOffset* table = jitterTableFor(size);
        ASSERT_NE(nullptr, table) << size;
        for (int i = 0; i < size; ++i)
            EXPECT_TRUE(std::max(table[i].jx, table[i].jy) <= 1 &&
                        std::min(table[i].jx, table[i].jy) >= 0)
                << size << " " << i;
    }
    EXPECT_EQ(nullptr, jitterTableFor(10));
}
