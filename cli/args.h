// Command-line argument parsing and the one-line error messages shared by the
// `vok` commands.
#ifndef VOK_CLI_ARGS_H
#define VOK_CLI_ARGS_H

#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "vok/core.h"

namespace vok_cli {

bool is_help_flag(const char *arg);

struct OptionSpec {
    const char *name;  // with its dashes: "--strength"
    bool takes_value;
};

// Options and positional arguments of one command. Options may come anywhere,
// as "--name value" or "--name=value"; "--" ends the options.
class Arguments {
public:
    // False with a message in `error` for an unknown option or a missing value.
    bool parse(int argc, char **argv, std::initializer_list<OptionSpec> options,
               std::string &error);

    bool has(const char *name) const;
    // The value of the last occurrence, or null when the option was not given.
    const char *value(const char *name) const;
    const std::vector<const char *> &positional() const { return positional_; }

    // Typed readings of an option; `out` is left alone when it is absent.
    // False with a message when the value is not a finite number, or not an
    // integer within [min, max].
    bool get_double(const char *name, double &out, std::string &error) const;
    bool get_int(const char *name, long long min, long long max, long long &out,
                 std::string &error) const;

private:
    std::vector<std::pair<std::string, const char *>> options_;
    std::vector<const char *> positional_;
};

// Default effect params with --strength S and --seed N applied when given.
bool read_effect_params(const Arguments &args, VokEffectParams &params, std::string &error);

// The decoded-image size limit: --max-pixels N (1 or more), else the default.
bool read_max_pixels(const Arguments &args, uint64_t &max_pixels, std::string &error);

// Prints "vok COMMAND: message" and a pointer to the help; returns kExitUsage.
int usage_error(const char *command, const std::string &message);
// Prints "vok: cannot ACTION 'path': reason"; returns kExitUsage.
int file_error(const char *action, const std::string &path, const std::string &reason);

}  // namespace vok_cli

#endif
