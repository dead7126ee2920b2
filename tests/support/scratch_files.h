#pragma once
// Scratch folders and whole files for tests. Every folder a test makes is removed by it: a
// ScratchDir when it goes, a freshDir by removeDir.

#include <string>
#include <vector>

namespace testsupport {

class ScratchDir {
  public:
    // A new empty folder under the system's temporary folder.
    ScratchDir();
    // A new empty folder "<name>.<process id>" under the working folder (ctest runs each test
    // program in its own build folder).
    explicit ScratchDir(const std::string& name);
    ~ScratchDir();  // removes the folder with everything in it
    ScratchDir(const ScratchDir&) = delete;
    ScratchDir& operator=(const ScratchDir&) = delete;

    const std::string& path() const { return path_; }
    std::string file(const std::string& name) const { return path_ + "/" + name; }
    // Writes a file below the folder (making the folders on its way) and returns its path.
    std::string write(const std::string& relative, const std::string& bytes) const;
    std::string write(const std::string& relative, const std::vector<unsigned char>& bytes) const;

  private:
    std::string path_;
};

// A fresh empty folder "<name>.<process id>" under the working folder, for tests that keep
// the folder's name; removeDir removes it with everything in it.
std::string freshDir(const std::string& name);
void removeDir(const std::string& dir);

// The whole file; "" when it cannot be read.
std::string readFile(const std::string& path);
// Writes the whole file, making the folders on its way; false when it cannot.
bool writeFile(const std::string& path, const std::string& bytes);
bool fileExists(const std::string& path);
// The names in a folder (not "." and ".."), in no particular order.
std::vector<std::string> listDir(const std::string& dir);

// The number of lines of text equal to line.
int countLines(const std::string& text, const std::string& line);
// The lines of text that begin with prefix.
std::vector<std::string> linesStartingWith(const std::string& text, const std::string& prefix);

}  // namespace testsupport
