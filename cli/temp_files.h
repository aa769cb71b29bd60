// Temporary files that must not outlive the process: an output is written to a
// temporary file beside it and renamed into place, and if SIGINT, SIGTERM or
// SIGHUP arrives meanwhile, the handler removes every temporary file still
// registered before the signal ends the process as it would have.
#ifndef VOK_CLI_TEMP_FILES_H
#define VOK_CLI_TEMP_FILES_H

#include <string>

namespace vok_cli {

// Registers `path` for removal on a fatal signal while it lives (installing
// the handlers on first use); forgets it when destroyed. When every slot is
// taken the file is simply not protected. Safe to use from several threads.
class TempFileGuard {
public:
    explicit TempFileGuard(const std::string &path);
    ~TempFileGuard();
    TempFileGuard(const TempFileGuard &) = delete;
    TempFileGuard &operator=(const TempFileGuard &) = delete;

private:
    int slot_;
};

}  // namespace vok_cli

#endif
