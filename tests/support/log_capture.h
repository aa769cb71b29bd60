// Captures every message the library logs while an instance is alive.
#ifndef VOK_TESTS_LOG_CAPTURE_H
#define VOK_TESTS_LOG_CAPTURE_H

#include <string>
#include <vector>

namespace vok_test {

struct LogMessage {
    int priority;
    std::string tag;
    std::string text;
};

class LogCapture {
public:
    LogCapture();
    ~LogCapture();
    LogCapture(const LogCapture &) = delete;
    LogCapture &operator=(const LogCapture &) = delete;

    const std::vector<LogMessage> &messages() const { return messages_; }
    // True when exactly one message was logged, with this text and priority
    // under the library's tag.
    bool only(const std::string &text, int priority = 3) const;
    bool contains(const std::string &text, int priority = 3) const;
    void clear() { messages_.clear(); }

private:
    static void sink(int priority, const char *tag, const char *message, void *context);
    std::vector<LogMessage> messages_;
};

}  // namespace vok_test

#endif
