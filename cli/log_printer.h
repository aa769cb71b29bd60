// Shows the library's log messages while a command runs: the library writes
// its diagnostics (why a step failed) at debug priority, which the default log
// filter hides.
#ifndef VOK_CLI_LOG_PRINTER_H
#define VOK_CLI_LOG_PRINTER_H

#include <cstddef>
#include <cstdio>

namespace vok_cli {

// While alive, prints every message, whatever its priority, to `out` as
// "<indent>vok-lite: message" and counts them. One at a time.
class LogPrinter {
public:
    explicit LogPrinter(FILE *out, const char *indent = "");
    ~LogPrinter();
    LogPrinter(const LogPrinter &) = delete;
    LogPrinter &operator=(const LogPrinter &) = delete;

    size_t count() const { return count_; }

private:
    static void print(int priority, const char *tag, const char *message, void *context);

    FILE *out_;
    const char *indent_;
    size_t count_ = 0;
};

}  // namespace vok_cli

#endif
