#include "support/log_capture.h"

#include "android_log.h"

namespace vok_test {

LogCapture::LogCapture() { vok_log_set_sink(&LogCapture::sink, this); }

LogCapture::~LogCapture() { vok_log_set_sink(nullptr, nullptr); }

void LogCapture::sink(int priority, const char *tag, const char *message, void *context) {
    static_cast<LogCapture *>(context)->messages_.push_back(
        {priority, tag ? tag : "", message ? message : ""});
}

bool LogCapture::only(const std::string &text, int priority) const {
    return messages_.size() == 1 && contains(text, priority);
}

bool LogCapture::contains(const std::string &text, int priority) const {
    for (const auto &m : messages_)
        if (m.text == text && m.priority == priority && m.tag == "vok-lite") return true;
    return false;
}

}  // namespace vok_test
