#pragma once
// A loaded movie script: the keyframe list, its sessions and definitions, and the
// evaluation of any frame into a view.

#include <vector>

#include "common_package/math/src/view.h"
#include "movie/definitions.h"
#include "movie/keyframe.h"
#include "movie/session.h"

class MovieRecord {
  public:
    MovieRecord();
    ~MovieRecord();
    MovieRecord(const MovieRecord&) = delete;
    MovieRecord& operator=(const MovieRecord&) = delete;

    // Reads a movie script into this (empty) record: 1 on success, -1 on failure after the
    // error message. With quiet set only errors and warnings are printed. Keyframes read
    // before a failure stay in the record.
    int loadRecord(const char* fileName, int quiet);

    void getResolution(int& width, int& height) const;
    int numKeyFrames() const;

    // 0 for an empty list, else 1 + the sum of (nFrames + 1) over every keyframe after the first.
    int totalNumFrame() const;
    // Segment k and local parameter t of frame f: 1, or -1 when f lies outside the movie.
    int locate(double frame, int& segment, double& t) const;
    // Frame number of keyframe k (0 for a single keyframe, totalNumFrame - 1 for the last);
    // -1 when there is no keyframe k.
    double frameOfKeyFrame(int k) const;
    // The interpolated camera at frame f: 1, or -1 outside the movie (out is then untouched).
    int evaluateFrame(double frame, View& out) const;
    // The camera at local parameter t (0 .. 1) of the segment from keyframe k to k + 1:
    // 1, or -1 (out untouched) for a segment or parameter outside the movie.
    int evaluateSegment(int segment, double t, View& out) const;

    // Script contents, for inspection.
    const KeyFrame& keyFrame(int k) const { return keyFrames_[k]; }
    int interpMethod() const { return interpMethod_; }
    int interpMethodQuat() const { return interpMethodQuat_; }
    int interpMethodFovy() const { return interpMethodFovy_; }
    int interpMethodAspect() const { return interpMethodAspect_; }
    int numSessions() const { return static_cast<int>(sessions_.size()); }
    const Session& session(int i) const { return sessions_[i]; }
    const DefinitionTable& definitions() const { return definitions_; }

  private:
    friend class ScriptLoader;

    void clear();

    int width_ = 256;
    int height_ = 256;
    std::vector<KeyFrame> keyFrames_;
    int interpMethod_ = INTERP_LINEAR;
    int interpMethodQuat_ = INTERP_LINEAR_QUAT;
    int interpMethodFovy_ = INTERP_LINEAR_FOVY;
    int interpMethodAspect_ = INTERP_LINEAR_ASPECT;
    DefinitionTable definitions_;
    std::vector<Session> sessions_;
};
