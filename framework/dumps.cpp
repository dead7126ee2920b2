#include "framework/dumps.h"

#include <GL/freeglut.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <new>
#include <vector>

#include "framework/actions.h"
#include "framework/frame_loop.h"
#include "framework/frame_writer.h"
#include "framework/framework_state.h"
#include "framework/view_control.h"
#include "framework/window_scope.h"
#include "image/pnm_file.h"
#include "image/readback.h"
#include "platform/command_runner.h"

namespace {

int screenDumpCounter = 0;

std::string numberedName(const std::string& head, long long number) {
    char digits[32];
    std::snprintf(digits, sizeof digits, "%04lld", number);
    return head + "." + digits + ".pnm";
}

// The file name of a frame, announced; "" (and the missing head said) without a head.
std::string announceFrame(const std::string& head, long long number) {
    if (head.empty()) {
        std::fprintf(stderr, "Err (dumpFrame): header is null.\n");
        return "";
    }
    const std::string name = numberedName(head, number);
    std::fprintf(stderr, "write frame to [%s]\n", name.c_str());
    return name;
}

[[noreturn]] void endAfterFailedWrite(const std::string& name) {
    std::fprintf(stderr, "Err : writing to [%s]\n", name.c_str());
    endProcess(1);
}

// Gives buffer the size of a frame; false, with the message, when memory runs out.
bool allocateFrame(std::vector<unsigned char>& buffer, std::size_t bytes) {
    try {
        buffer.resize(bytes);
        return true;
    } catch (const std::bad_alloc&) {
        std::fprintf(stderr, "Err: failed to allocate buffer for movie making.\n\n");
        return false;
    }
}

void writeFrame(const std::string& head, long long number, const unsigned char* image, int width,
                int height) {
    const std::string name = announceFrame(head, number);
    if (name.empty()) return;
    const int written = writePNM(name.c_str(), "P6", width, height, 255, image);
    if (gzipFrames) {
        // The file name goes to gzip as one word, never through a command interpreter; -f
        // replaces an older .gz of the same name instead of stopping to ask.
        std::fprintf(stderr, "Run [gzip %s]\n", name.c_str());
        platform::runCommand({"gzip", "-f", "--", name});
    }
    if (written != 1) endAfterFailedWrite(name);
}

}  // namespace

void dumpFrame(const std::string& head, long long number, const unsigned char* image) {
    writeFrame(head, number, image, winWidth, winHeight);
}

void dumpMovie(bool silent) {
    if (!movie) return;
    WindowScope scope(mainWindow);
    const int width = winWidth, height = winHeight;
    const std::size_t frameBytes = static_cast<std::size_t>(std::max(width, 0)) *
                                   static_cast<std::size_t>(std::max(height, 0)) * 3;
    std::vector<unsigned char> frame;
    if (!allocateFrame(frame, frameBytes)) return;
    // Each frame's file is written while the next frame renders.
    FrameWriter writer;
    const auto endOnFailure = [&writer] {
        if (!writer.finish()) endAfterFailedWrite(writer.failedFile());
    };
    const int total = movie->totalNumFrame();
    long long n = frameSkip;
    currFrame = doubleRate ? frameSkip / 2 : frameSkip;
    setInterfaceSuppressed(true);
    while (currFrame < total - 0.6) {
        const long long number = n + frameNumOffset;
        if (!silent) {
            std::fprintf(stderr, "- dumping to [%lld] ... ", number);
            std::fflush(stderr);
        }
        View v;
        if (movie->evaluateFrame(currFrame, v) == 1) applyView(v);
        int w = width, h = height;
        if (jitterSize <= 1) {
            captureNextDisplay(frame.data(), width, height);
            displayCallback();
        } else {
            displayCallback();
            const JitterAccumulator& jittered = lastJitteredFrame();
            w = jittered.width();
            h = jittered.height();
            frame.assign(jittered.image().begin(), jittered.image().end());
        }
        endOnFailure();
        const std::string name = announceFrame(movieFileHead, number);
        if (!name.empty()) {
            if (gzipFrames) std::fprintf(stderr, "Run [gzip %s]\n", name.c_str());
            std::vector<unsigned char> next;
            if (!allocateFrame(next, frameBytes)) break;
            next.swap(frame);  // the writer owns this frame's pixels now
            writer.write(name, std::move(next), w, h, gzipFrames);
        }
        ++n;
        currFrame += doubleRate ? 0.5 : 1.0;
        if (!silent) std::fprintf(stderr, "done.\n");
    }
    endOnFailure();
    setInterfaceSuppressed(false);
}

int screenDump(const char* fileName) {
    ImageBuffer image;
    {
        WindowScope scope(mainWindow);
        // The picture is drawn again into the back buffer and read from there: the front buffer
        // holds the panel and boxes too, and reads of it after a swap are not dependable.
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        drawFrame(0);
        glFinish();
        image = readImg(GL_BACK, -1, -1, -1, -1);
        glutPostRedisplay();
    }
    std::string name;
    if (fileName != nullptr && *fileName != '\0') {
        name = fileName;
    } else {
        char automatic[32];
        std::snprintf(automatic, sizeof automatic, "screen.%04d.pnm", screenDumpCounter++);
        name = automatic;
    }
    const int result =
        image.empty() ? 1
                      : write_pnm(name.c_str(), image.width, image.height, 3, image.pixels.data());
    if (result == 0) {
        std::fprintf(stderr, "Screen dumped to file [%s].\n", name.c_str());
        return 1;
    }
    std::fprintf(stderr, "Faled to dump screen to file [%s].\n", name.c_str());
    return -1;
}
