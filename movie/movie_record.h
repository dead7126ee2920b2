#pragma once
// A loaded movie script: the keyframe list, its sessions and definitions, and the
// evaluation of any frame into a view.

#include "common_package/math/src/view.h"

class MovieRecord {
public:
    MovieRecord();
    ~MovieRecord();
    MovieRecord(const MovieRecord&) = delete;
    MovieRecord& operator=(const MovieRecord&) = delete;

    // Reads a movie script into this (empty) record: 1 on success, -1 on failure after the
    // error message. With quiet set only errors and warnings are printed.
    int loadRecord(const char* fileName, int quiet);

    void getResolution(int& width, int& height) const;
    int numKeyFrames() const;

    // 0 for an empty list, else 1 + the sum of (nFrames + 1) over every keyframe after the first.
    int totalNumFrame() const;
    // Segment k and local parameter t of frame f: 1, or -1 when f lies outside the movie.
    int locate(double frame, int& segment, double& t) const;
    // Frame number of keyframe k (0 for a single keyframe, totalNumFrame - 1 for the last).
    double frameOfKeyFrame(int k) const;
    // The interpolated camera at frame f: 1, or -1 outside the movie (out is then untouched).
    int evaluateFrame(double frame, View& out) const;
};
