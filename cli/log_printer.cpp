#include "log_printer.h"

#include "android_log.h"

namespace vok_cli {

LogPrinter::LogPrinter(FILE *out, const char *indent) : out_(out), indent_(indent) {
    vok_log_set_sink(&LogPrinter::print, this);
}

LogPrinter::~LogPrinter() { vok_log_set_sink(nullptr, nullptr); }

void LogPrinter::print(int, const char *tag, const char *message, void *context) {
    auto *self = static_cast<LogPrinter *>(context);
    fprintf(self->out_, "%s%s: %s\n", self->indent_, tag ? tag : "", message);
    ++self->count_;
}

}  // namespace vok_cli
