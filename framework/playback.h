#pragma once
// Movie playback arithmetic: the idle-time advance in real time or frame by frame, the end of
// the movie, and the frame steps and jumps of the keys. No GL, no globals.

#include "movie/movie_record.h"

struct PlaybackState {
    double currFrame = 0.0;
    int playCount = 0;  // 0 stopped, 1 once, kPlayForever loop
    bool playEveryFrame = false;
    bool doubleRate = false;
    double lastPlayTime = 0.0;  // kNotStarted before the first real-time advance
};

enum class PlaybackResult {
    Unchanged,  // nothing to redraw (the real-time clock has not moved a frame on yet)
    Advanced,   // currFrame changed: evaluate, apply and draw it
    Stopped,    // the last play ran out: currFrame is the last frame, playCount 0
};

// One idle step of playback at wall-clock time now for a movie of totalNumFrame frames.
// Real time runs at 30 frames per second in whole frames and holds the last frame for one
// step before the end of the movie is reached, so that play-once stops and looping restarts
// at frame 0 just as in frame-by-frame mode.
PlaybackResult advancePlayback(PlaybackState& s, double now, int totalNumFrame);

// The frame keys F1 .. F10 (fKey 1 .. 10): evenly spread over the movie, the last frame for
// F10; keys beyond a short movie's frame count go to its last frame.
int jumpFrame(int fKey, int totalNumFrame);

// Left / Right (step 1, or 0.5 with doubleRate), Home / End (5) within 0 .. totalNumFrame - 1.
double stepFrame(double currFrame, double step, int totalNumFrame);

// Page Up: the frame of the keyframe after the segment holding currFrame (unchanged at the
// last keyframe). Page Down: the start of the segment when currFrame lies inside it, else the
// previous keyframe (unchanged at the first).
double nextKeyFrame(const MovieRecord& movie, double currFrame);
double previousKeyFrame(const MovieRecord& movie, double currFrame);

// True when currFrame lies on a keyframe (local parameter below 1e-7).
bool onKeyFrame(const MovieRecord& movie, double currFrame);
