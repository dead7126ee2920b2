// Playback and frame navigation arithmetic: every-frame and real-time advance, the end of the
// movie, the F-key jumps and keyframe steps on a loaded script.

#include <gtest/gtest.h>

#include "framework/framework_state.h"
#include "framework/playback.h"

namespace {

PlaybackState playing(int count, bool everyFrame, double frame = 0.0) {
    PlaybackState s;
    s.currFrame = frame;
    s.playCount = count;
    s.playEveryFrame = everyFrame;
    s.lastPlayTime = kNotStarted;
    return s;
}

}  // namespace

TEST(Playback, EveryFramePlaysOnceToTheLastFrameAndStops) {
    PlaybackState s = playing(1, true);
    EXPECT_EQ(PlaybackResult::Advanced, advancePlayback(s, 0.0, 3));
    EXPECT_EQ(1.0, s.currFrame);
    EXPECT_EQ(PlaybackResult::Advanced, advancePlayback(s, 0.0, 3));
    EXPECT_EQ(2.0, s.currFrame);
    EXPECT_EQ(PlaybackResult::Stopped, advancePlayback(s, 0.0, 3));
    EXPECT_EQ(2.0, s.currFrame);
    EXPECT_EQ(0, s.playCount);
}

TEST(Playback, EveryFrameWithDoubleRateStepsHalfFrames) {
    PlaybackState s = playing(1, true);
    s.doubleRate = true;
    advancePlayback(s, 0.0, 3);
    EXPECT_EQ(0.5, s.currFrame);
}

TEST(Playback, LoopRestartsAtFrameZeroAndAOneFrameMovieStaysThere) {
    PlaybackState s = playing(kPlayForever, true, 2.0);
    EXPECT_EQ(PlaybackResult::Advanced, advancePlayback(s, 0.0, 3));
    EXPECT_EQ(0.0, s.currFrame);
    EXPECT_EQ(kPlayForever - 1, s.playCount);

    PlaybackState one = playing(kPlayForever, true);
    for (int i = 0; i < 5; ++i) {
        advancePlayback(one, 0.0, 1);
        EXPECT_EQ(0.0, one.currFrame);
    }
}

TEST(Playback, RealTimeFirstCallStartsTheClockThenThirtyFramesASecond) {
    PlaybackState s = playing(1, false);
    EXPECT_EQ(PlaybackResult::Unchanged, advancePlayback(s, 100.0, 100));
    EXPECT_EQ(0.0, s.currFrame);
    EXPECT_EQ(100.0, s.lastPlayTime);
    // 10 ms: n = int(0.6 + 0.5) = 1 half frame, no whole step yet; the clock stays.
    EXPECT_EQ(PlaybackResult::Unchanged, advancePlayback(s, 100.01, 100));
    EXPECT_EQ(100.0, s.lastPlayTime);
    // 0.1 s: int(6 + 0.5) = 6 half frames = 3 frames.
    EXPECT_EQ(PlaybackResult::Advanced, advancePlayback(s, 100.1, 100));
    EXPECT_EQ(3.0, s.currFrame);
    EXPECT_EQ(100.1, s.lastPlayTime);
}

TEST(Playback, RealTimeShowsTheLastFrameThenStopsOrLoops) {
    PlaybackState once = playing(1, false, 1.0);
    once.lastPlayTime = 0.0;
    EXPECT_EQ(PlaybackResult::Advanced, advancePlayback(once, 10.0, 3));  // clamped to 2
    EXPECT_EQ(2.0, once.currFrame);
    EXPECT_EQ(1, once.playCount);
    EXPECT_EQ(PlaybackResult::Stopped, advancePlayback(once, 11.0, 3));
    EXPECT_EQ(2.0, once.currFrame);
    EXPECT_EQ(0, once.playCount);

    PlaybackState loop = playing(kPlayForever, false, 2.0);
    loop.lastPlayTime = 0.0;
    EXPECT_EQ(PlaybackResult::Advanced, advancePlayback(loop, 1.0, 3));
    EXPECT_EQ(0.0, loop.currFrame);
    EXPECT_EQ(kPlayForever - 1, loop.playCount);
}

TEST(Playback, AClockJumpDoesNotOverflowTheStepCount) {
    PlaybackState s = playing(1, false, 0.0);
    s.lastPlayTime = 0.0;
    EXPECT_EQ(PlaybackResult::Advanced, advancePlayback(s, 1e300, 50));
    EXPECT_EQ(49.0, s.currFrame);
}

TEST(FrameKeys, JumpsSpreadOverTheMovie) {
    EXPECT_EQ(0, jumpFrame(1, 21));
    EXPECT_EQ(8, jumpFrame(5, 21));  // 20 x 4 / 9
    EXPECT_EQ(20, jumpFrame(10, 21));
    EXPECT_EQ(0, jumpFrame(7, 1));
    EXPECT_EQ(1, jumpFrame(2, 3));
    EXPECT_EQ(2, jumpFrame(3, 3));
    EXPECT_EQ(2, jumpFrame(10, 3));  // beyond a short movie: its last frame
    EXPECT_EQ(99999, jumpFrame(10, 100000));
}

TEST(FrameKeys, StepsStayInsideTheMovie) {
    EXPECT_EQ(0.0, stepFrame(0.5, -1.0, 10));
    EXPECT_EQ(9.0, stepFrame(7.0, 5.0, 10));
    EXPECT_EQ(4.5, stepFrame(4.0, 0.5, 10));
}

class KeyFrameSteps : public ::testing::Test {
  protected:
    void SetUp() override {
        ASSERT_EQ(1, movie_.loadRecord(
                         SKYRAMA_SOURCE_DIR "/tests/framework/scripts/twentyone_frames.scp", 1));
        ASSERT_EQ(21, movie_.totalNumFrame());
    }
    MovieRecord movie_;
};

TEST_F(KeyFrameSteps, PageUpGoesToTheNextKeyFrameAndStopsAtTheLast) {
    EXPECT_EQ(10.0, nextKeyFrame(movie_, 0.0));
    EXPECT_EQ(10.0, nextKeyFrame(movie_, 5.0));
    EXPECT_EQ(20.0, nextKeyFrame(movie_, 10.0));
    EXPECT_EQ(20.0, nextKeyFrame(movie_, 20.0));
}

TEST_F(KeyFrameSteps, PageDownGoesToTheSegmentStartThenThePreviousKeyFrame) {
    EXPECT_EQ(10.0, previousKeyFrame(movie_, 15.0));
    EXPECT_EQ(0.0, previousKeyFrame(movie_, 10.0));
    EXPECT_EQ(10.0, previousKeyFrame(movie_, 20.0));
    EXPECT_EQ(0.0, previousKeyFrame(movie_, 0.0));
}

TEST_F(KeyFrameSteps, OnlyKeyFramesAreMarked) {
    EXPECT_TRUE(onKeyFrame(movie_, 0.0));
    EXPECT_TRUE(onKeyFrame(movie_, 10.0));
    EXPECT_TRUE(onKeyFrame(movie_, 20.0));
    EXPECT_FALSE(onKeyFrame(movie_, 10.5));
    EXPECT_FALSE(onKeyFrame(movie_, 25.0));
}
