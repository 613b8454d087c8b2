// The command line of corvis-voice.
#ifndef CORVIS_VOICE_APP_OPTIONS_H_
#define CORVIS_VOICE_APP_OPTIONS_H_

#include <chrono>
#include <string>
#include <variant>
#include <vector>

namespace corvis::voice {

enum ExitStatus {
  kExitOk = 0,
  kExitFailed = 1,
  kExitUsage = 2,
  kExitNoApp = 3,
  kExitNoBus = 6,
  kExitInterrupted = 130
};

struct Options {
  std::string app_id = "com.example.app";
  std::chrono::milliseconds timeout{5000};
  std::chrono::seconds total_timeout{600};
  std::vector<std::string> scripts;
  bool is_narrated = false;
};

struct Exit {
  int status;
  std::string text;
};

std::variant<Options, Exit> ParseOptions(int argc, char** argv);

}  // namespace corvis::voice

#endif  // CORVIS_VOICE_APP_OPTIONS_H_
