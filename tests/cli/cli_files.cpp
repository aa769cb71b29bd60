#include "cli_files.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <dirent.h>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <sys/stat.h>
#include <unistd.h>

namespace vok_test {

ScratchDir::ScratchDir() {
    std::string pattern = testing::TempDir() + "vok-cli-XXXXXX";
    if (mkdtemp(&pattern[0]) == nullptr) abort();
    dir_ = pattern;
}

ScratchDir::~ScratchDir() {
    for (const std::string &name : entries()) unlink(path(name).c_str());
    rmdir(dir_.c_str());
}

std::vector<std::string> ScratchDir::entries() const {
    std::vector<std::string> names;
    if (DIR *dir = opendir(dir_.c_str())) {
        while (const dirent *entry = readdir(dir)) {
            const std::string name = entry->d_name;
            if (name != "." && name != "..") names.push_back(name);
        }
        closedir(dir);
    }
    std::sort(names.begin(), names.end());
    return names;
}

void write_file(const std::string &path, const std::string &content) {
    std::ofstream(path, std::ios::binary) << content;
}

std::string read_file(const std::string &path) {
    std::ostringstream content;
    content << std::ifstream(path, std::ios::binary).rdbuf();
    return content.str();
}

bool file_exists(const std::string &path) {
    struct stat info;
    return stat(path.c_str(), &info) == 0;
}

}  // namespace vok_test
