// Stand-in for Android's liblog on other systems.
#include "android_log.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <vector>

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
    va_list args;
    va_start(args, format);
    va_list measure;
    va_copy(measure, args);
    int length = std::vsnprintf(nullptr, 0, format, measure);
    va_end(measure);
    if (length < 0) {
        va_end(args);
        return length;
    }
    std::vector<char> message(static_cast<size_t>(length) + 1);
    std::vsnprintf(message.data(), message.size(), format, args);
    va_end(args);

    if (g_sink != nullptr) {
        g_sink(priority, tag, message.data(), g_sink_context);
    } else if (priority >= threshold()) {
        std::fprintf(stderr, "%c/%s: %s\n", priority_letter(priority), tag ? tag : "",
                     message.data());
    }
    return length;
}

extern "C" void vok_log_set_sink(vok_log_sink sink, void *context) {
    g_sink = sink;
    g_sink_context = context;
}
