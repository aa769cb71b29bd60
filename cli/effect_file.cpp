#include "effect_file.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "args.h"
#include "command.h"

namespace vok_cli {

bool read_text_file(const std::string &path, std::string &text, std::string &error) {
    FILE *file = fopen(path.c_str(), "rb");
    if (file == nullptr) {
        error = strerror(errno);
        return false;
    }
    text.clear();
    char chunk[65536];
    size_t got;
    while ((got = fread(chunk, 1, sizeof chunk, file)) > 0) text.append(chunk, got);
    const bool failed = ferror(file) != 0;
    const int read_errno = errno;
    fclose(file);
    if (failed) {
        error = strerror(read_errno);
        return false;
    }
    return true;
}

int EffectFile::load(const std::string &path) {
    TESKUnloadEffect(&root_);
    std::string text, error;
    if (!read_text_file(path, text, error)) return file_error("read", path, error);
    if (text.find('\0') != std::string::npos) {
        fprintf(stderr, "vok: '%s' is not an effect description (binary data)\n", path.c_str());
        return kExitFailed;
    }
    root_ = TESKLoadEffect(text.c_str());
    if (root_ == nullptr) {
        fprintf(stderr, "vok: '%s' is not a valid effect description\n", path.c_str());
        return kExitFailed;
    }
    return kExitOk;
}

}  // namespace vok_cli
