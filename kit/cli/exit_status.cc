// Maps errors to exit statuses and describes the statuses for the help.
#include "cli/exit_status.h"

#include <cstdio>

#include "cli/command_line.h"
#include "output/text_forms.h"

namespace corvis::kit {

ExitStatus StatusOf(ErrorKind kind) {
  switch (kind) {
    case ErrorKind::kFailed:
    case ErrorKind::kClosed:
      return kExitFailed;
    case ErrorKind::kUsage:
      return kExitUsage;
    case ErrorKind::kNoApplication:
      return kExitNoApp;
    case ErrorKind::kCrashing:
      return kExitCrashing;
    case ErrorKind::kNoEnvironment:
      return kExitNoEnvironment;
    case ErrorKind::kTimeOver:
      return kExitTimeOver;
    case ErrorKind::kInterrupted:
      return kExitInterrupted;
  }
  return kExitFailed;
}

void PrintError(const Error& error) {
  if (error.message.empty() || error.kind == ErrorKind::kInterrupted) return;
  std::fprintf(stderr, "corvis: %s\n", TextForTerminal(error.message).c_str());
}

void DescribeStatuses(CLI::App& app, const std::map<int, std::string>& own) {
  std::map<int, std::string> meanings = {
      {kExitUsage, "wrong usage; nothing was started"},
      {kExitNoApp, "the application can't be loaded, or never listened"},
      {kExitCrashing, "its page keeps crashing"},
      {kExitNoEnvironment, "no bus, no display, or a program is missing"},
      {kExitInterrupted, "interrupted by Ctrl-C; 128 + its number for another signal"},
  };
  for (const auto& [status, meaning] : own) meanings[status] = meaning;
  std::string text = "\nExit status\n";
  for (const auto& [status, meaning] : meanings) text += HelpLine(std::to_string(status), meaning);
  AddFooter(app, text);
}

}  // namespace corvis::kit
