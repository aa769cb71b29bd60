/* The Android log interface, provided on other systems by libvoklite_log.
 * Messages go to standard error when their priority reaches VOK_LOG_LEVEL
 * (default 5, warnings and above; set 2 to see everything, 8 for nothing).
 * A sink installed with vok_log_set_sink receives every message instead. */
#ifndef VOK_PLATFORM_ANDROID_LOG_H
#define VOK_PLATFORM_ANDROID_LOG_H

#ifdef __ANDROID__
#include <android/log.h>
#else

#ifdef __cplusplus
extern "C" {
#endif

enum {
    ANDROID_LOG_UNKNOWN = 0, ANDROID_LOG_DEFAULT, ANDROID_LOG_VERBOSE, ANDROID_LOG_DEBUG,
    ANDROID_LOG_INFO, ANDROID_LOG_WARN, ANDROID_LOG_ERROR, ANDROID_LOG_FATAL, ANDROID_LOG_SILENT
};

__attribute__((visibility("default"), format(printf, 3, 4)))
int __android_log_print(int priority, const char *tag, const char *format, ...);

typedef void (*vok_log_sink)(int priority, const char *tag, const char *message, void *context);

/* Routes every message (whatever its priority) to sink; null restores stderr. */
__attribute__((visibility("default")))
void vok_log_set_sink(vok_log_sink sink, void *context);

#ifdef __cplusplus
}
#endif

#endif
#endif
