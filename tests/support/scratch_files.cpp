#include "tests/support/scratch_files.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

namespace fs = std::filesystem;

namespace testsupport {

namespace {

std::string makeTempDir() {
    std::error_code error;
    fs::path base = fs::temp_directory_path(error);
    if (error) base = "/tmp";
    std::string pattern = (base / "skyrama-test-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) {
        std::fprintf(stderr, "cannot make a folder like %s\n", pattern.c_str());
        std::abort();
    }
    return pattern;
}

}  // namespace

ScratchDir::ScratchDir() : path_(makeTempDir()) {}

ScratchDir::ScratchDir(const std::string& name) : path_(freshDir(name)) {}

ScratchDir::~ScratchDir() {
    removeDir(path_);
}

std::string ScratchDir::write(const std::string& relative, const std::string& bytes) const {
    const std::string p = file(relative);
    if (!writeFile(p, bytes)) std::fprintf(stderr, "cannot write %s\n", p.c_str());
    return p;
}

std::string ScratchDir::write(const std::string& relative,
                              const std::vector<unsigned char>& bytes) const {
    return write(relative, std::string(bytes.begin(), bytes.end()));
}

std::string freshDir(const std::string& name) {
    std::error_code error;
    fs::path cwd = fs::current_path(error);
    if (error) cwd = fs::temp_directory_path();
    const fs::path dir = cwd / (name + "." + std::to_string(getpid()));
    fs::remove_all(dir, error);
    fs::create_directories(dir, error);
    return dir.string();
}

void removeDir(const std::string& dir) {
    if (dir.empty()) return;
    std::error_code error;
    fs::remove_all(dir, error);
}

std::string readFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

bool writeFile(const std::string& path, const std::string& bytes) {
    const fs::path parent = fs::path(path).parent_path();
    std::error_code error;
    if (!parent.empty()) fs::create_directories(parent, error);
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return static_cast<bool>(out);
}

bool fileExists(const std::string& path) {
    std::error_code error;
    return fs::exists(path, error);
}

std::vector<std::string> listDir(const std::string& dir) {
    std::vector<std::string> names;
    std::error_code error;
    for (fs::directory_iterator it(dir, error), end; !error && it != end; it.increment(error))
        names.push_back(it->path().filename().string());
    return names;
}

int countLines(const std::string& text, const std::string& line) {
    int n = 0;
    std::istringstream in(text);
    for (std::string l; std::getline(in, l);)
        n += l == line ? 1 : 0;
    return n;
}

std::vector<std::string> linesStartingWith(const std::string& text, const std::string& prefix) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string l; std::getline(in, l);) {
        if (l.compare(0, prefix.size(), prefix) == 0) lines.push_back(l);
    }
    return lines;
}

}  // namespace testsupport
