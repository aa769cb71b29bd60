#include "args.h"

#include <cerrno>
#include <climits>
#include <cstdint>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "command.h"
#include "image_io.h"

namespace vok_cli {

bool is_help_flag(const char *arg) {
    return strcmp(arg, "--help") == 0 || strcmp(arg, "-h") == 0;
}

bool Arguments::parse(int argc, char **argv, std::initializer_list<OptionSpec> options,
                      std::string &error) {
    bool options_ended = false;
    for (int i = 0; i < argc; ++i) {
        const char *arg = argv[i];
        if (options_ended || arg[0] != '-' || strcmp(arg, "-") == 0) {
            positional_.push_back(arg);
            continue;
        }
        if (strcmp(arg, "--") == 0) {
            options_ended = true;
            continue;
        }
        const char *equals = strchr(arg, '=');
        const std::string name = equals ? std::string(arg, equals) : std::string(arg);
        const OptionSpec *option = nullptr;
        for (const OptionSpec &candidate : options)
            if (name == candidate.name) option = &candidate;
        if (option == nullptr) {
            error = "unknown option '" + name + "'";
            return false;
        }
        const char *value = nullptr;
        if (option->takes_value) {
            if (equals) {
                value = equals + 1;
            } else if (i + 1 < argc) {
                value = argv[++i];
            } else {
                error = "option '" + name + "' needs a value";
                return false;
            }
        } else if (equals) {
            error = "option '" + name + "' takes no value";
            return false;
        }
        options_.emplace_back(name, value);
    }
    return true;
}

bool Arguments::has(const char *name) const {
    for (const auto &option : options_)
        if (option.first == name) return true;
    return false;
}

const char *Arguments::value(const char *name) const {
    const char *found = nullptr;
    for (const auto &option : options_)
        if (option.first == name) found = option.second;
    return found;
}

bool Arguments::get_double(const char *name, double &out, std::string &error) const {
    const char *text = value(name);
    if (text == nullptr) return true;
    char *end = nullptr;
    errno = 0;
    const double parsed = strtod(text, &end);
    if (end == text || *end != '\0' || errno == ERANGE || !std::isfinite(parsed)) {
        error = std::string("invalid number for ") + name + ": '" + text + "'";
        return false;
    }
    out = parsed;
    return true;
}

bool Arguments::get_int(const char *name, long long min, long long max, long long &out,
                        std::string &error) const {
    const char *text = value(name);
    if (text == nullptr) return true;
    char *end = nullptr;
    errno = 0;
    const long long parsed = strtoll(text, &end, 10);
    if (end == text || *end != '\0' || errno == ERANGE || parsed < min || parsed > max) {
        error = std::string("invalid value for ") + name + ": '" + text + "' (an integer from " +
                std::to_string(min) + " to " + std::to_string(max) + ")";
        return false;
    }
    out = parsed;
    return true;
}

bool read_effect_params(const Arguments &args, VokEffectParams &params, std::string &error) {
    VokEffectInitParams(&params);
    long long seed = params.seed;
    if (!args.get_double("--strength", params.strength, error) ||
        !args.get_int("--seed", INT32_MIN, INT32_MAX, seed, error))
        return false;
    params.seed = static_cast<int32_t>(seed);
    return true;
}

bool read_max_pixels(const Arguments &args, uint64_t &max_pixels, std::string &error) {
    long long limit = static_cast<long long>(kDefaultMaxPixels);
    if (!args.get_int("--max-pixels", 1, LLONG_MAX, limit, error)) return false;
    max_pixels = static_cast<uint64_t>(limit);
    return true;
}

int usage_error(const char *command, const std::string &message) {
    fprintf(stderr, "vok %s: %s\nTry 'vok %s --help'.\n", command, message.c_str(), command);
    return kExitUsage;
}

int file_error(const char *action, const std::string &path, const std::string &reason) {
    fprintf(stderr, "vok: cannot %s '%s': %s\n", action, path.c_str(), reason.c_str());
    return kExitUsage;
}

}  // namespace vok_cli
