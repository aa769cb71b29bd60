// Scratch directories and file helpers for the vok tool's tests.
#ifndef VOK_TESTS_CLI_FILES_H
#define VOK_TESTS_CLI_FILES_H

#include <string>
#include <vector>

namespace vok_test {

// A fresh directory under the test temporary directory, removed with its
// files when the object goes.
class ScratchDir {
public:
    ScratchDir();
    ~ScratchDir();
    ScratchDir(const ScratchDir &) = delete;
    ScratchDir &operator=(const ScratchDir &) = delete;

    std::string path(const std::string &name) const { return dir_ + "/" + name; }
    // Names of the entries, sorted, without "." and "..".
    std::vector<std::string> entries() const;

private:
    std::string dir_;
};

void write_file(const std::string &path, const std::string &content);
std::string read_file(const std::string &path);
bool file_exists(const std::string &path);

}  // namespace vok_test

#endif
