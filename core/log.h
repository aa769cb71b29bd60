// The library's one way to log: the Android log under the tag "vok-lite".
#ifndef VOK_CORE_LOG_H
#define VOK_CORE_LOG_H

#include "android_log.h"

#define VOK_LOG_TAG "vok-lite"
#define VOK_LOGD(...) __android_log_print(ANDROID_LOG_DEBUG, VOK_LOG_TAG, __VA_ARGS__)
#define VOK_LOGI(...) __android_log_print(ANDROID_LOG_INFO, VOK_LOG_TAG, __VA_ARGS__)

#endif
