// Declares and checks the options with which an application is run.
#include "cli/application.h"

#include <systemd/sd-bus.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <utility>

#include "cli/command_line.h"
#include "corvis_tv/permissions.h"
#include "corvis_tv/remote_keys.h"
#include "output/text_forms.h"
#include "service/wire.h"

namespace corvis::kit {

namespace {

bool ReadSize(const std::string& text, int& width, int& height) {
  // Screens go up to 8K; a screenshot of a larger page would take gigabytes.
  constexpr int kLeast = 16;
  constexpr int kMost = 8192;
  char rest = 0;
  return std::sscanf(text.c_str(), "%dx%d%c", &width, &height, &rest) == 2 &&
         std::min(width, height) >= kLeast && std::max(width, height) <= kMost;
}

std::string CheckSize(const std::string& value) {
  int width = 0;
  int height = 0;
  return ReadSize(value, width, height) ? "" : "a size such as 1920x1080, with sides from 16 to 8192 pixels";
}

std::string CheckAppId(const std::string& value) {
  // The runtime owns both this name and NAME.runtime on the bus.
  const bool is_id = sd_bus_service_name_is_valid((value + ".runtime").c_str()) > 0 && value[0] != ':' &&
                     value.find('.') != std::string::npos;
  if (value == wire::kServiceId) return "a name other than the voice service's";
  return is_id ? "" : "a dotted name such as com.example.app";
}

std::string CheckPrivilege(const std::string& value) {
  const bool is_uri =
      value.find("://") != std::string::npos && value.find_first_of(" \t\n") == std::string::npos;
  return is_uri || value == "microphone" || value == "voicecontrol" ? ""
                                                                    : "microphone, voicecontrol or a URI";
}

std::string CheckConsole(const std::string& value) {
  return value == "errors" || value == "page" || value == "all" || value == "none"
             ? ""
             : "errors, page, all or none";
}

// "Back=27".
std::string CheckKey(const std::string& value) {
  const size_t equals = value.find('=');
  const bool is_key = equals != std::string::npos && tv::FindRemoteKey(value.substr(0, equals)) != nullptr &&
                      WholeNumber(tv::kMostKeyCode)(value.substr(equals + 1)).empty();
  return is_key ? "" : "a key of the remote control and its keyCode, such as Back=27";
}

std::string CheckGrant(const std::string& value) {
  return tv::IsPermission(value) ? "" : "one of " + tv::PermissionList();
}

std::string CheckUserAgent(const std::string& value) {
  const bool is_header = !value.empty() && std::none_of(value.begin(), value.end(), [](char letter) {
    return letter < ' ' || letter > '~';
  });
  return is_header ? "" : "a text of printable ASCII characters";
}

// Whether a line of the runtime's standard error is of the libraries that play media, which report each
// device and plug-in that a machine doesn't have, or of the inspector, which has no icon for browsers.
bool IsChatter(const std::string& line) {
  constexpr const char* kBeginnings[] = {"ALSA lib ", "AL lib: ", "(WebKit", "** (WebKit",
                                         "libva ",    "libEGL ",  "MESA",    "WebKit wasn't able"};
  return line.empty() || line.find("Failed to load inspector resource") != std::string::npos ||
         std::any_of(std::begin(kBeginnings), std::end(kBeginnings),
                     [&line](const char* text) { return line.rfind(text, 0) == 0; });
}

bool IsSet(const char* variable) {
  const char* value = std::getenv(variable);
  return value != nullptr && *value != '\0';
}

// Declares the options for stored data and for connections to servers.
void AddStorageOptions(CLI::App& app, RunOptions& run) {
  AddValue(app, "--profile", "DIR", "folder for data that the page stores (default: nothing is kept)", "", {},
           [&run](const std::string& folder) { run.profile = std::filesystem::absolute(folder).string(); });
  AddValue(app, "--user-agent", "TEXT", "the user agent that the page and servers see", "", CheckUserAgent,
           [&run](const std::string& text) {
             run.runtime_arguments.insert(run.runtime_arguments.end(), {"--user-agent", text});
           });
  AddFlag(app, "--ignore-tls-errors", "accept servers whose certificate is not trusted",
          [&run] { run.runtime_arguments.emplace_back("--ignore-tls-errors"); });
}

// Declares the options for the application's own server.
void AddServerOptions(CLI::App& app, ApplicationOptions& options) {
  BeginGroup(app, "The application's server");
  AddText(app, "--serve", "COMMAND",
          "start the application's server with this shell command, end it with the run",
          options.run.server.command);
  AddText(app, "--url", "URL",
          "the application's URL, instead of the operand; --serve waits until it answers", options.url);
  AddText(app, "--serve-in", "DIR", "folder in which the server is started (default: the present one)",
          options.run.server.folder);
  AddTime(app, "--serve-timeout", "S", "time limit of the server's first answer in seconds",
          options.run.server.limit);
}

// The page as the runtime expects it: a URL unchanged, an existing file or folder as an absolute path.
Result<std::string> PageOf(const std::string& operand) {
  std::error_code ignored;
  if (std::filesystem::exists(operand, ignored)) return std::filesystem::absolute(operand, ignored).string();
  if (operand.find(':') != std::string::npos) return operand;
  return Fail(operand + " does not exist; expected a URL, an HTML file or a folder.",
              ErrorKind::kNoApplication);
}

}  // namespace

bool HasDisplay() {
  return IsSet("DISPLAY") || IsSet("WAYLAND_DISPLAY");
}

void AddDisplayOptions(CLI::App& app, Viewer viewer, ApplicationOptions& options) {
  BeginGroup(app, "The application");
  bool& is_headless = options.run.is_headless;
  const bool is_for_person = viewer == Viewer::kPerson;
  is_headless = !is_for_person || !HasDisplay();
  AddFlag(app, "--headless", is_for_person ? "run without a display" : "run without a display (default)",
          is_headless);
  AddFlag(app, "--window", is_for_person ? "open a window (default if there is a display)" : "open a window",
          [&is_headless] { is_headless = false; });
}

void AddApplicationOptions(CLI::App& app, Viewer viewer, ApplicationOptions& options) {
  BeginGroup(app, "The application");
  RunOptions& run = options.run;
  AddText(app, "--app-id", "ID", "the application id", run.app_id, CheckAppId);
  AddFlag(app, "--no-privileges", "grant no privileges", [&run] { run.privileges.clear(); });
  AddList(app, "--privilege", "NAME",
          "grant only this: microphone, voicecontrol or a URI; repeatable (default both)", run.privileges,
          CheckPrivilege);
  AddList(app, "--grant", "NAME",
          "grant a permission to the page, such as geolocation; repeatable (default none)", run.grants,
          CheckGrant);
  AddValue(app, "--size", "WIDTHxHEIGHT", "the page's size in pixels", "1920x1080", CheckSize,
           [&run](const std::string& size) { ReadSize(size, run.width, run.height); });
  AddFlag(app, "--single-page", "serve the page for paths without a file or extension",
          [&run] { run.runtime_arguments.emplace_back("--single-page"); });
  AddList(app, "--key", "NAME=CODE", "the keyCode of a key, such as Back=27; repeatable", options.key_codes,
          CheckKey);
  AddStorageOptions(app, run);
  AddDisplayOptions(app, viewer, options);
  AddText(app, "--console", "KIND", "console lines to print on standard error: errors, page, all, none",
          options.console, CheckConsole);
  AddTime(app, "--timeout", "MS", "time limit of an answer; four times as long for loading and listen()",
          run.answer_timeout);
  AddLanguageOptions(app, options.language);
  AddServerOptions(app, options);
}

void AddInspectOption(CLI::App& app, ApplicationOptions& options) {
  AddOptionalValue(app, "--inspect", "PORT",
                   "serve the web engine's inspector on the loopback interface (default: any free port)", "0",
                   options.inspector_port);
}

void PrintLine(const std::string& line) {
  std::fprintf(stderr, "%s\n", TextForTerminal(line).c_str());
}

Result<std::unique_ptr<Run>> StartApplication(Supervisor& supervisor, const std::string& operand,
                                              const ApplicationOptions& options, Printer notice,
                                              const Printer& console) {
  Result<std::string> page = PageOf(operand);
  if (!page) return Fail(page.error());
  const Result<SpokenLanguage> language = OpenLanguage(options.language);
  if (!language) return Fail(language.error());
  RunOptions run = options.run;
  run.page = std::move(*page);
  for (const std::string& key : options.key_codes)
    run.runtime_arguments.insert(run.runtime_arguments.end(), {"--key", key});
  if (!options.inspector_port.empty())
    run.runtime_arguments.insert(run.runtime_arguments.end(), {"--inspect", options.inspector_port});
  if (const std::string tag = PageLanguage(options.language, *language); !tag.empty())
    run.runtime_arguments.insert(run.runtime_arguments.end(), {"--language", tag});
  const auto write = [kind = options.console, console](const auto& level, const auto& text,
                                                       const auto& source) {
    const bool is_error = source == "page" && (level == "error" || level == "uncaught");
    if (kind == "all" || kind == source || (kind == "errors" && is_error))
      console("[" + source + "] " + level + ": " + LinesForTerminal(text));
  };
  const auto write_line = [kind = options.console, console](const std::string& line) {
    if (kind == "all" || !IsChatter(line)) console(ForTerminal(line));
  };
  const auto write_server_line = [kind = options.console, console](const std::string& line) {
    if (kind == "all") console("[server] " + ForTerminal(line));
  };
  const auto report = [notice = std::move(notice)](const std::string& sentence) {
    notice(ForTerminal(sentence));
  };
  auto started = Run::Start(supervisor, run, {report, write, write_line, write_server_line});
  if (started) (*started)->conversation().set_phrases(language->phrases());
  return started;
}

std::chrono::milliseconds LoadingLimit(const ApplicationOptions& options) {
  constexpr int kLoadingFactor = 4;
  return options.run.answer_timeout * kLoadingFactor;
}

Status WaitUntilLoaded(Run& run, const ApplicationOptions& options) {
  return run.conversation().WaitForPage(LoadingLimit(options));
}

Status WaitUntilListening(Run& run, const ApplicationOptions& options) {
  return run.conversation().WaitForApp(LoadingLimit(options));
}

}  // namespace corvis::kit
