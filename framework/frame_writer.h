#pragma once
// Writes dumped movie frames on a thread of its own, so that a frame's file is written while
// the next frame is rendered. One frame is in flight at a time.

#include <string>
#include <thread>
#include <vector>

class FrameWriter {
  public:
    FrameWriter() = default;
    ~FrameWriter();  // waits for the frame in flight
    FrameWriter(const FrameWriter&) = delete;
    FrameWriter& operator=(const FrameWriter&) = delete;

    // Starts writing pixels (width x height RGB, rows top first) as a P6 file, then gzips it
    // when asked (the file name as one word, no command interpreter). Waits first for the
    // previous frame; returns false, without starting, when that one failed.
    bool write(std::string fileName, std::vector<unsigned char> pixels, int width, int height,
               bool gzip);
    // Waits for the frame in flight; false when it could not be written.
    bool finish();
    // The file that could not be written.
    const std::string& failedFile() const { return failedFile_; }

  private:
    std::thread worker_;
    bool failed_ = false;  // set by the worker, read after join
    std::string failedFile_;
};
