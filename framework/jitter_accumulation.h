#pragma once
// The jittered frame's own accumulation: every pass read back as RGB bytes and summed in
// 32-bit integers (16 passes of 8-bit values cannot overflow), then the rounded mean.

#include <cstdint>
#include <vector>

class JitterAccumulator {
  public:
    // Makes the buffers hold width x height RGB pixels, keeping them when the size is the same;
    // starts a new frame (no pass counted). False when the memory cannot be had.
    bool prepare(int width, int height);

    // Where the next pass is read back to (bottom row first, as OpenGL reads).
    unsigned char* passBuffer() { return image_.data(); }
    // Adds the pass in passBuffer() to the sums (the first pass of a frame stores).
    void addPass();
    int count() const { return count_; }

    // Every component = integer part of (sum / count + 0.5), clamped to 0 .. 255, written to
    // image(); then the rows are reversed so that the first row is the top of the picture.
    void average();
    const std::vector<unsigned char>& image() const { return image_; }

    int width() const { return width_; }
    int height() const { return height_; }

  private:
    int width_ = 0, height_ = 0;
    int count_ = 0;
    std::vector<std::uint32_t> sum_;
    std::vector<unsigned char> image_;
};
