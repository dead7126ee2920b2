#include "framework/frame_writer.h"

#include <utility>

#include "image/pnm_file.h"
#include "platform/command_runner.h"

FrameWriter::~FrameWriter() {
    finish();
}

bool FrameWriter::finish() {
    if (worker_.joinable()) worker_.join();
    return !failed_;
}

bool FrameWriter::write(std::string fileName, std::vector<unsigned char> pixels, int width,
                        int height, bool gzip) {
    if (!finish()) return false;
    worker_ = std::thread(
        [this, name = std::move(fileName), data = std::move(pixels), width, height, gzip] {
            const int written = writePNM(name.c_str(), "P6", width, height, 255, data.data());
            if (gzip) platform::runCommand({"gzip", "-f", "--", name});
            if (written != 1) {
                failed_ = true;
                failedFile_ = name;
            }
        });
    return true;
}
