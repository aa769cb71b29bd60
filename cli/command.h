// The record every subcommand of `vok` provides. A command lives in its own
// cmd_<name>.cpp defining `const Command <name>_command`, and is listed once in
// commands.def.
#ifndef VOK_CLI_COMMAND_H
#define VOK_CLI_COMMAND_H

namespace vok_cli {

// Exit statuses shared by every command.
enum ExitStatus {
    kExitOk = 0,
    kExitFailed = 1,  // the library reported a failure
    kExitUsage = 2,   // bad arguments, unreadable or unwritable files
};

struct Command {
    const char *name;
    const char *summary;  // one line for `vok --help`
    const char *help;     // full text for `vok NAME --help`, starting with "Usage:"
    // Receives the arguments after the command name; returns an ExitStatus.
    int (*run)(int argc, char **argv);
};

}  // namespace vok_cli

#endif
