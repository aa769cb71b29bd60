// `vok info`: versions of the library and of the effect description format.
#include <cstdio>
#include <string>

#include "args.h"
#include "command.h"
#include "vok/core.h"
#include "vok/effects.h"

namespace vok_cli {
namespace {

const char kName[] = "info";

int run_info(int argc, char **argv) {
    Arguments args;
    std::string error;
    if (!args.parse(argc, argv, {{"--presets", false}}, error)) return usage_error(kName, error);
    if (!args.positional().empty()) return usage_error(kName, "takes no arguments");
    if (args.has("--presets")) {
        // The names "legacyProcessor" takes as "legacyName", borders marked.
        for (uint32_t i = 0; TESKLegacyPresetName(i) != nullptr; ++i)
            printf("%s%s\n", TESKLegacyPresetName(i),
                   TESKLegacyPresetIsBorder(i) ? " (border)" : "");
        return kExitOk;
    }
    uint32_t major, minor, patch;
    VokLiteVersion(&major, &minor, &patch);
    printf("vok-lite library %u.%u.%u\n", major, minor, patch);
    VokLiteProclistVersion(&major, &minor, &patch);
    printf("effect format %u.%u.%u\n", major, minor, patch);
    return kExitOk;
}

}  // namespace

extern const Command info_command = {
    kName,
    "print the library and effect format versions",
    "Usage: vok info [--presets]\n"
    "Prints the version of the vok-lite library and of the effect description\n"
    "format it reads.\n"
    "\n"
    "Options:\n"
    "  --presets   list the preset names of \"legacyProcessor\" instead, one a\n"
    "              line; borders (which bordersEnabled can turn off) are marked\n"
    "  -h, --help  show this help\n",
    run_info,
};

}  // namespace vok_cli
