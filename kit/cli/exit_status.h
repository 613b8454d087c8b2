// The exit statuses of commands, which docs/voice-scripts.md lists, and the printing of errors.
#ifndef CORVIS_KIT_CLI_EXIT_STATUS_H_
#define CORVIS_KIT_CLI_EXIT_STATUS_H_

#include <map>
#include <string>

#include "base/result.h"
#include "cli/command_line.h"

namespace corvis::kit {

enum ExitStatus {
  kExitOk = 0,
  kExitFailed = 1,
  kExitUsage = 2,
  kExitNoApp = 3,
  kExitCrashing = 4,
  kExitNoEnvironment = 6,
  kExitLowCoverage = 7,
  kExitTimeOver = 8,
  kExitInterrupted = 130,
};

// The exit status for this kind of error. For kInterrupted that of SIGINT.
ExitStatus StatusOf(ErrorKind kind);

// Prints an error on standard error, unless its message is empty or it is the user's own interrupt.
void PrintError(const Error& error);

// Appends the exit statuses to a command's help: `own`, and those that all commands share.
void DescribeStatuses(CLI::App& app, const std::map<int, std::string>& own);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_CLI_EXIT_STATUS_H_
