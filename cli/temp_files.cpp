#include "temp_files.h"

#include <unistd.h>

#include <atomic>
#include <csignal>
#include <cstring>
#include <mutex>

namespace vok_cli {
namespace {

// Fixed storage, so the handler only reads memory that never moves; a slot's
// flag is set after its path is complete and cleared before it is reused.
constexpr int kSlots = 64;
constexpr size_t kPathMax = 4096;
char paths[kSlots][kPathMax];
std::atomic<bool> in_use[kSlots];
const int kSignals[] = {SIGINT, SIGTERM, SIGHUP};

extern "C" void remove_and_reraise(int signal) {
    for (int i = 0; i < kSlots; ++i)
        if (in_use[i].load()) unlink(paths[i]);  // async-signal-safe
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

void install_handlers() {
    static std::once_flag once;
    std::call_once(once, [] {
        for (int s : kSignals) std::signal(s, remove_and_reraise);
    });
}

}  // namespace

TempFileGuard::TempFileGuard(const std::string &path) : slot_(-1) {
    if (path.size() >= kPathMax) return;
    install_handlers();
    static std::mutex claiming;
    std::lock_guard<std::mutex> lock(claiming);
    for (int i = 0; i < kSlots; ++i) {
        if (in_use[i].load()) continue;
        memcpy(paths[i], path.c_str(), path.size() + 1);
        in_use[i].store(true);
        slot_ = i;
        return;
    }
}

TempFileGuard::~TempFileGuard() {
    if (slot_ >= 0) in_use[slot_].store(false);
}

}  // namespace vok_cli
