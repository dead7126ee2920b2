#include "framework/playback.h"

#include <algorithm>
#include <cmath>

PlaybackResult advancePlayback(PlaybackState& s, double now, int totalNumFrame) {
    const double lastFrame = totalNumFrame - 1;
    bool advanced = false;
    if (s.playEveryFrame) {
        s.currFrame += s.doubleRate ? 0.5 : 1.0;
        advanced = true;
    } else {
        int steps = 0;
        if (now > s.lastPlayTime) {
            // Half frames rounded, then whole frames; a clock jump cannot overflow the count.
            const double n = std::floor(std::min((now - s.lastPlayTime) * 30.0 * 2 + 0.5, 2e9));
            steps = static_cast<int>(n) / 2;
        }
        if (steps >= 1) {
            if (s.currFrame < lastFrame) {
                s.currFrame = std::min(s.currFrame + steps, lastFrame);
            } else {
                // Already showing the last frame: going on runs past the end.
                s.currFrame = lastFrame + 1.0;
            }
            s.lastPlayTime = now;
            advanced = true;
        } else if (s.lastPlayTime >= 1.7976931348623157e308) {
            s.lastPlayTime = now;  // the first call only starts the clock
        }
    }
    if (s.currFrame > lastFrame) {
        --s.playCount;
        if (s.playCount <= 0) {
            s.playCount = 0;
            s.currFrame = std::max(lastFrame, 0.0);
            return PlaybackResult::Stopped;
        }
        s.currFrame = 0.0;
    }
    return advanced ? PlaybackResult::Advanced : PlaybackResult::Unchanged;
}

int jumpFrame(int fKey, int totalNumFrame) {
    if (totalNumFrame <= 1) return 0;
    const int n = std::min(totalNumFrame, 10);
    const long long k = static_cast<long long>(totalNumFrame - 1) * (fKey - 1) / (n - 1);
    return static_cast<int>(std::min<long long>(std::max<long long>(k, 0), totalNumFrame - 1));
}

double stepFrame(double currFrame, double step, int totalNumFrame) {
    const double lastFrame = std::max(totalNumFrame - 1, 0);
    return std::min(std::max(currFrame + step, 0.0), lastFrame);
}

double nextKeyFrame(const MovieRecord& movie, double currFrame) {
    int segment = 0;
    double t = 0.0;
    if (movie.locate(currFrame, segment, t) != 1) return currFrame;
    if (segment + 1 >= movie.numKeyFrames()) return currFrame;
    return movie.frameOfKeyFrame(segment + 1);
}

double previousKeyFrame(const MovieRecord& movie, double currFrame) {
    int segment = 0;
    double t = 0.0;
    if (movie.locate(currFrame, segment, t) != 1) return currFrame;
    if (t > 1e-7) return movie.frameOfKeyFrame(segment);
    if (segment == 0) return currFrame;
    return movie.frameOfKeyFrame(segment - 1);
}

bool onKeyFrame(const MovieRecord& movie, double currFrame) {
    int segment = 0;
    double t = 0.0;
    if (movie.locate(currFrame, segment, t) != 1) return false;
    return std::fabs(t) < 1e-7;
}
