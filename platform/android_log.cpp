// Stand-in for Android's liblog on other systems.
#include "android_log.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>

namespace {

vok_log_sink g_sink = nullptr;
void *g_sink_context = nullptr;

int threshold() {
    const char *level = std::getenv("VOK_LOG_LEVEL");
    if (level == nullptr || *level == '\0') return ANDROID_LOG_WARN;
    return std::atoi(level);
}

char priority_letter(int priority) {
    static const char letters[] = "??VDIWEFS";
    return (priority >= 0 && priority <= ANDROID_LOG_SILENT) ? letters[priority] : '?';
}

}  // namespace

extern "C" int __android_log_print(int priority, const char *tag, const char *format, ...) {
    // A fixed buffer, as the device's log has a fixed entry size: longer
    // messages are cut, and logging never allocates (so it works when memory
    // has run out, which is often what is being logged).
    char message[4096];
    va_list args;
    va_start(args, format);
    const int length = std::vsnprintf(message, sizeof message, format, args);
    va_end(args);
    if (length < 0) return length;

    if (g_sink != nullptr) {
        g_sink(priority, tag, message, g_sink_context);
    } else if (priority >= threshold()) {
        std::fprintf(stderr, "%c/%s: %s\n", priority_letter(priority), tag ? tag : "",
                     message);
    }
    return length;
}

extern "C" void vok_log_set_sink(vok_log_sink sink, void *context) {
    g_sink = sink;
    g_sink_context = context;
}
