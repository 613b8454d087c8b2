// The command line of corvis-tv.
#ifndef CORVIS_RUNTIME_LAUNCHER_OPTIONS_H_
#define CORVIS_RUNTIME_LAUNCHER_OPTIONS_H_

#include <map>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace corvis::tv {

// The exit statuses of corvis-tv.
enum ExitStatus {
  kExitOk = 0,
  kExitUsage = 2,
  kExitLoadFailed = 3,
  kExitCrashing = 4,
  kExitAppIdTaken = 5,
  kExitNoEnvironment = 6,
};

// Prints why the program fails, a sentence, and returns the status.
int Fail(ExitStatus status, const std::string& sentence);

enum class ConsoleKind { kPage, kAll, kNone };

// Codes that replace those of corvis_tv/remote_keys.h, by key name.
using KeyCodes = std::map<std::string, unsigned>;

struct Options {
  std::string app_id = "com.example.app";
  std::vector<std::string> extensions;
  std::vector<std::string> privileges;
  // The permissions that pages get without a user's consent, by their names in corvis_tv/permissions.h.
  std::vector<std::string> grants;
  int width = 1920;
  int height = 1080;
  bool is_headless = false;
  bool is_single_page = false;
  // The folder for data that pages store; if empty, one in the run's folder.
  std::string profile;
  // If empty, the engine's own.
  std::string user_agent;
  bool are_tls_errors_ignored = false;
  // A script that runs in the main frame of each page before the page's own; may be empty.
  std::string page_script;
  KeyCodes key_codes;
  // The inspector's port, 0 for any; nothing for no inspector.
  std::optional<int> inspector_port;
  ConsoleKind console = ConsoleKind::kPage;
  // Whether lines of script APIs are reported when they are written, which printing them implies. Otherwise
  // they are reported before the next reply or line of the page.
  bool is_api_followed = false;
  // The value of navigator.language, a BCP 47 tag; by default that of the environment.
  std::string language;
  // A URL, an HTML file, or a folder.
  std::string page;
};

// What to do instead of running: print a text and exit.
struct Exit {
  int status;
  std::string text;
};

std::variant<Options, Exit> ParseOptions(int argc, char** argv);

}  // namespace corvis::tv

#endif  // CORVIS_RUNTIME_LAUNCHER_OPTIONS_H_
