#include "tools/datatree/core/data_error.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <sys/stat.h>

#include "image/data_file.h"

int runConverter(const char* program, const std::function<int()>& body) {
    try {
        return body();
    } catch (const DataError& e) {
        std::fprintf(stderr, "%s: error: %s\n", program, e.what());
        return kExitDataError;
    } catch (const std::bad_alloc&) {
        std::fprintf(stderr, "%s: error: out of memory\n", program);
        return kExitDataError;
    }
}

int usage(const char* program, const char* arguments) {
    std::fprintf(stderr, "usage: %s %s\n", program, arguments);
    return kExitUsage;
}

namespace {

// Opens "<path>.tmp", lets write() fill it, then renames it over path.
void writeThroughTemporary(const std::string& path, const std::function<bool(FILE*)>& write) {
    makeDirectories(directoryOf(path));
    const std::string temporary = path + ".tmp";
    FILE* file = std::fopen(temporary.c_str(), "wb");
    if (!file) {
        throw DataError("cannot create [" + temporary + "]: " + std::strerror(errno));
    }
    bool ok = write(file);
    ok = (std::fflush(file) == 0) && ok;
    ok = (std::fclose(file) == 0) && ok;
    if (!ok) {
        std::remove(temporary.c_str());
        throw DataError("cannot write [" + temporary + "]");
    }
    if (std::rename(temporary.c_str(), path.c_str()) != 0) {
        std::remove(temporary.c_str());
        throw DataError("cannot rename [" + temporary + "] to [" + path +
                        "]: " + std::strerror(errno));
    }
}

}  // namespace

void writeFileAtomically(const std::string& path, const std::string& bytes) {
    writeThroughTemporary(path, [&](FILE* file) {
        return std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
    });
}

void writeFileAtomically(const std::string& path, const std::vector<unsigned char>& bytes) {
    writeThroughTemporary(path, [&](FILE* file) {
        return std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
    });
}

void writePackedFileAtomically(const std::string& path, const std::string& bytes) {
    writeThroughTemporary(path, [&](FILE* file) {
        return WriteDeflateZip(file, reinterpret_cast<const unsigned char*>(bytes.data()),
                               bytes.size()) == 1;
    });
}

void makeDirectories(const std::string& path) {
    if (path.empty() || path == "." || path == "/") return;
    struct stat info;
    if (stat(path.c_str(), &info) == 0) {
        if (S_ISDIR(info.st_mode)) return;
        throw DataError("[" + path + "] exists and is not a directory");
    }
    makeDirectories(directoryOf(path));
    if (mkdir(path.c_str(), 0755) != 0 && errno != EEXIST) {
        throw DataError("cannot create directory [" + path + "]: " + std::strerror(errno));
    }
}

std::string directoryOf(const std::string& path) {
    std::string::size_type slash = path.find_last_of('/');
    if (slash == std::string::npos) return ".";
    if (slash == 0) return "/";
    return path.substr(0, slash);
}
