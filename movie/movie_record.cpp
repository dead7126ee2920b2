#include "movie/movie_record.h"

MovieRecord::MovieRecord() = default;

MovieRecord::~MovieRecord() = default;

void MovieRecord::clear() {
    width_ = 256;
    height_ = 256;
    keyFrames_.clear();
    interpMethod_ = INTERP_LINEAR;
    interpMethodQuat_ = INTERP_LINEAR_QUAT;
    interpMethodFovy_ = INTERP_LINEAR_FOVY;
    interpMethodAspect_ = INTERP_LINEAR_ASPECT;
    definitions_ = DefinitionTable();
    sessions_.clear();
}

void MovieRecord::getResolution(int& width, int& height) const {
    width = width_;
    height = height_;
}

int MovieRecord::numKeyFrames() const {
    return static_cast<int>(keyFrames_.size());
}
