#pragma once
// Scratch files, small images, model handles and captured messages for the model and
// particle tests.

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "common_package/glm/src/glm.h"
#include "tests/support/scratch_files.h"

namespace modeltest {

using testsupport::readFile;
using testsupport::ScratchDir;

struct ModelDeleter {
    void operator()(GLMmodel* m) const { glmDelete(m); }
};
using ModelPtr = std::unique_ptr<GLMmodel, ModelDeleter>;

inline void writeText(const std::string& path, const std::string& text) {
    ASSERT_TRUE(testsupport::writeFile(path, text)) << path;
}

// Writes text as the file name in dir and reads it with glmReadOBJ.
inline ModelPtr readModel(const ScratchDir& dir, const std::string& text,
                          const std::string& name = "model.obj") {
    writeText(dir.file(name), text);
    return ModelPtr(glmReadOBJ(dir.file(name).c_str()));
}

// What a call prints on standard error.
template <class Call>
std::string stderrOf(Call&& call) {
    testing::internal::CaptureStderr();
    call();
    return testing::internal::GetCapturedStderr();
}

// A binary PNM ("P5" for one component, "P6" for three); pixels of one pixel's size fill
// the whole image with that colour.
inline void writePnm(const std::string& path, int width, int height, int components,
                     const std::vector<unsigned char>& pixels) {
    std::string text = (components == 1 ? "P5\n" : "P6\n") + std::to_string(width) + " " +
                       std::to_string(height) + "\n255\n";
    const bool fill = pixels.size() == static_cast<std::size_t>(components);
    for (int i = 0; i < (fill ? width * height : 1); i++)
        text.append(pixels.begin(), pixels.end());
    writeText(path, text);
}

// An allocate/release pair for the libraries' replaceable allocators that counts its calls.
inline int allocations = 0, releases = 0;
inline void* countingAllocate(std::size_t bytes) {
    allocations++;
    return std::malloc(bytes);
}
inline void countedRelease(void* p) {
    if (p != nullptr) releases++;
    std::free(p);
}

}  // namespace modeltest
