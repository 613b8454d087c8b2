// The command line of corvis-voice.
#ifndef CORVIS_KIT_CLI_OPTIONS_H_
#define CORVIS_KIT_CLI_OPTIONS_H_

#include <chrono>
#include <string>
#include <variant>
#include <vector>

namespace corvis::kit {

enum ExitStatus {
  kExitOk = 0,
  kExitFailed = 1,
  kExitUsage = 2,
  kExitNoApp = 3,
  kExitNoBus = 6,
  kExitLowCoverage = 7,
  kExitTimeOver = 8,
  kExitInterrupted = 130
};

// What a run of scripts prints.
enum class Output { kNarration, kTap, kJson };

enum class Job { kPrompt, kScripts, kItems, kLint };

struct Options {
  Job job = Job::kPrompt;
  std::string app_id = "com.example.app";
  std::chrono::milliseconds timeout{5000};
  std::chrono::seconds total_timeout{600};
  std::vector<std::string> scripts;
  Output output = Output::kNarration;
  // Files and folders to write; empty for none.
  std::string junit_file;
  std::string screenshot_folder;
  bool is_coverage_shown = false;
  // Percent; less fails the run.
  long least_coverage = 0;
  // How long to wait before each thing said, for people who watch.
  std::chrono::milliseconds pace{0};
  // What the application was given, for a script that takes it away.
  std::vector<std::string> privileges;
  // Only reads the scripts.
  bool is_check_only = false;
  // For the lint: the page's callbacks are called, too.
  bool is_calling = false;
  // Where the picture of the items goes; empty for none.
  std::string png_file;
};

struct Exit {
  int status;
  std::string text;
};

std::variant<Options, Exit> ParseOptions(int argc, char** argv);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_CLI_OPTIONS_H_
