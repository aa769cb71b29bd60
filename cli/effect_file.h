// Reading effect descriptions from files.
#ifndef VOK_CLI_EFFECT_FILE_H
#define VOK_CLI_EFFECT_FILE_H

#include <string>

#include "vok/effects.h"

namespace vok_cli {

// Reads a whole file; false with the reason (strerror text) in `error`.
bool read_text_file(const std::string &path, std::string &text, std::string &error);

// A loaded effect, unloaded when it goes out of scope.
class EffectFile {
public:
    EffectFile() = default;
    ~EffectFile() { TESKUnloadEffect(&root_); }
    EffectFile(const EffectFile &) = delete;
    EffectFile &operator=(const EffectFile &) = delete;

    // Reads and loads `path`, printing a one-line message on failure. Returns
    // kExitOk, kExitUsage when the file cannot be read, or kExitFailed when
    // the library refuses the description (its log says why).
    int load(const std::string &path);
    VokJsonValue root() const { return root_; }

private:
    VokJsonValue root_ = nullptr;
};

}  // namespace vok_cli

#endif
