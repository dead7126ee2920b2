#pragma once
// Shared helpers of the data-tree tests: scratch folders, small files, running a converter
// and capturing what it says.

#include <string>
#include <vector>

// A fresh folder under /tmp, removed with everything in it when the object goes.
class ScratchDir {
  public:
    ScratchDir();
    ~ScratchDir();
    ScratchDir(const ScratchDir&) = delete;
    ScratchDir& operator=(const ScratchDir&) = delete;
    const std::string& path() const { return path_; }
    // Writes the file (creating its folders) and returns its full path.
    std::string write(const std::string& relative, const std::string& bytes) const;
    std::string write(const std::string& relative, const std::vector<unsigned char>& bytes) const;

  private:
    std::string path_;
};

bool fileExists(const std::string& path);
std::string readFile(const std::string& path);

// Runs the command with its standard error captured; returns the exit code.
struct RunResult {
    int exitCode = -1;
    std::string err, out;
};
RunResult runCommand(const std::string& command);

// Little-endian and big-endian byte helpers for building binary inputs.
void putU32le(std::string& b, unsigned v);
void putI32be(std::string& b, int v);
void putU32be(std::string& b, unsigned v);
void putF64be(std::string& b, double v);
void putF64le(std::string& b, double v);
