#include "tests/datatree/datatree_test_support.h"

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "tools/datatree/core/data_error.h"
#include "tools/datatree/core/text_input.h"

ScratchDir::ScratchDir() {
    char name[] = "/tmp/datatree_test_XXXXXX";
    if (!mkdtemp(name)) std::abort();
    path_ = name;
}

ScratchDir::~ScratchDir() {
    std::string command = "rm -rf '" + path_ + "'";
    if (std::system(command.c_str()) != 0)
        std::fprintf(stderr, "cannot remove %s\n", path_.c_str());
}

std::string ScratchDir::write(const std::string& relative, const std::string& bytes) const {
    std::string path = path_ + "/" + relative;
    makeDirectories(directoryOf(path));
    FILE* f = std::fopen(path.c_str(), "wb");
    if (!f) std::abort();
    std::fwrite(bytes.data(), 1, bytes.size(), f);
    std::fclose(f);
    return path;
}

std::string ScratchDir::write(const std::string& relative,
                              const std::vector<unsigned char>& bytes) const {
    return write(relative, std::string(bytes.begin(), bytes.end()));
}

bool fileExists(const std::string& path) {
    struct stat s;
    return stat(path.c_str(), &s) == 0;
}

std::string readFile(const std::string& path) {
    return readWholeFile(path);
}

RunResult runCommand(const std::string& command) {
    char errName[] = "/tmp/datatree_err_XXXXXX";
    char outName[] = "/tmp/datatree_out_XXXXXX";
    int errFd = mkstemp(errName), outFd = mkstemp(outName);
    close(errFd);
    close(outFd);
    std::string full = command + " >" + outName + " 2>" + errName;
    int status = std::system(full.c_str());
    RunResult r;
    r.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    r.err = readWholeFile(errName);
    r.out = readWholeFile(outName);
    std::remove(errName);
    std::remove(outName);
    return r;
}

void putU32le(std::string& b, unsigned v) {
    for (int i = 0; i < 4; ++i)
        b += char((v >> (8 * i)) & 0xFF);
}
void putU32be(std::string& b, unsigned v) {
    for (int i = 3; i >= 0; --i)
        b += char((v >> (8 * i)) & 0xFF);
}
void putI32be(std::string& b, int v) {
    putU32be(b, unsigned(v));
}
void putF64be(std::string& b, double v) {
    unsigned char raw[8];
    std::memcpy(raw, &v, 8);
    for (int i = 7; i >= 0; --i)
        b += char(raw[i]);
}
void putF64le(std::string& b, double v) {
    unsigned char raw[8];
    std::memcpy(raw, &v, 8);
    for (int i = 0; i < 8; ++i)
        b += char(raw[i]);
}
