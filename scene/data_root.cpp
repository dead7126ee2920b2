#include "scene/data_root.h"

#include <sys/stat.h>

#include <cstdio>
#include <cstdlib>

std::string dataRootFromEnvironment() {
    const char* root = std::getenv("TOPDIR");
    return root != nullptr ? std::string(root) : std::string(kDefaultDataRoot);
}

std::string underDataRoot(const std::string& root, const std::string& relative) {
    return root + "/" + relative;
}

bool readableFile(const std::string& path) {
    struct stat info;
    if (stat(path.c_str(), &info) != 0 || !S_ISREG(info.st_mode)) return false;
    std::FILE* f = std::fopen(path.c_str(), "rb");
    if (f == nullptr) return false;
    std::fclose(f);
    return true;
}

int ephemerisCacheSizeFor(int dataSize, int cacheSize) {
    const long long twice = 2LL * cacheSize;
    return twice < dataSize ? static_cast<int>(twice) : dataSize;
}
