// How commands end: their exit statuses, which docs/voice-scripts.md lists, and what is printed of errors.
#ifndef CORVIS_KIT_CLI_EXIT_STATUS_H_
#define CORVIS_KIT_CLI_EXIT_STATUS_H_

#include <CLI/CLI.hpp>
#include <map>
#include <string>

#include "base/result.h"

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

// The status of a process that ends with this kind of error; of an interrupted one, that of SIGINT.
ExitStatus StatusOf(ErrorKind kind);

// Prints an error on standard error. Not that somebody interrupted the run, who knows, and nothing for an
// error without a message.
void PrintError(const Error& error);

// Ends the help of a command with what its exit statuses mean: `own`, and those that all commands share.
void DescribeStatuses(CLI::App& app, const std::map<int, std::string>& own);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_CLI_EXIT_STATUS_H_
