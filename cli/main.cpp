// `vok`: applies vok-lite effects to photos from a terminal.
#include <cstdio>
#include <cstring>
#include <new>

#include "args.h"
#include "command.h"

namespace vok_cli {
#define VOK_COMMAND(name) extern const Command name##_command;
#include "commands.def"
#undef VOK_COMMAND
}  // namespace vok_cli

namespace {

using vok_cli::Command;

const Command *const kCommands[] = {
#define VOK_COMMAND(name) &vok_cli::name##_command,
#include "commands.def"
#undef VOK_COMMAND
};

void print_help(FILE *out) {
    fputs("Usage: vok COMMAND [ARGUMENTS...]\n"
          "Applies vok-lite photo effects from the command line.\n"
          "\n"
          "Commands:\n",
          out);
    for (const Command *command : kCommands)
        fprintf(out, "  %-10s %s\n", command->name, command->summary);
    fputs("\n"
          "Run 'vok COMMAND --help' for the arguments of one command.\n"
          "Exit status: 0 success, 1 the effect failed, 2 usage or file errors.\n",
          out);
}

}  // namespace

int main(int argc, char **argv) {
    if (argc < 2) {
        print_help(stderr);
        return vok_cli::kExitUsage;
    }
    const char *name = argv[1];
    if (vok_cli::is_help_flag(name)) {
        print_help(stdout);
        return vok_cli::kExitOk;
    }
    for (const Command *command : kCommands) {
        if (strcmp(command->name, name) != 0) continue;
        for (int i = 2; i < argc && strcmp(argv[i], "--") != 0; ++i) {
            if (vok_cli::is_help_flag(argv[i])) {
                fputs(command->help, stdout);
                return vok_cli::kExitOk;
            }
        }
        // Out of memory anywhere in a command (arguments, images, effects) is
        // reported, not a crash; outputs are only ever renamed into place whole.
        try {
            return command->run(argc - 2, argv + 2);
        } catch (const std::bad_alloc &) {
            fprintf(stderr, "vok %s: out of memory\n", name);
            return vok_cli::kExitFailed;
        }
    }
    fprintf(stderr, "vok: unknown command '%s'\nTry 'vok --help'.\n", name);
    return vok_cli::kExitUsage;
}
