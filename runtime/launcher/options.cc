// Parses the command line with a table that has a row for each option.
#include "launcher/options.h"

#include <getopt.h>
#include <gio/gio.h>

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <sstream>

#include "corvis_tv/control.h"
#include "corvis_tv/permissions.h"
#include "corvis_tv/remote_keys.h"

namespace corvis::tv {

namespace {

constexpr const char* kHelpHead = R"(Usage: corvis-tv [OPTIONS] URL|FILE|FOLDER

Runs a web application as on a TV, with the given extension libraries.

)";

constexpr const char* kHelpFoot = R"(  --help, --version

FOLDER (with an index.html), or the folder of FILE, is served over HTTP to this run only, as a new origin. Only pages of
the application's origin get the extensions' APIs.

Needs a D-Bus session bus, on which it provides its control interface as ID.runtime.

Exit status: 0 ended normally, 2 wrong usage, 3 the page can't be loaded, 4 the page's process keeps
crashing, 5 the application is already running, 6 no bus or no display.
)";

constexpr int kSmallestSide = 16;
constexpr int kLargestSide = 8192;

// Setters return an error message, empty if the value is valid.

std::string SetAppId(Options& options, const std::string& id) {
  options.app_id = id;
  // Check the longer name of the control interface.
  const bool is_id = g_dbus_is_name((id + kControlNameSuffix).c_str()) != FALSE &&
                     id.find('.') != std::string::npos && id[0] != ':';
  return is_id ? "" : "Expected an application id such as com.example.app, not \"" + id + "\".";
}

std::string AddExtension(Options& options, const std::string& path) {
  options.extensions.push_back(path);
  return g_file_test(path.c_str(), G_FILE_TEST_EXISTS) != FALSE
             ? ""
             : "There is no extension library " + path + "; build it, or use another --extension.";
}

std::string AddPrivilege(Options& options, const std::string& uri) {
  options.privileges.push_back(uri);
  return uri.find_first_of(" \t\n") == std::string::npos ? "" : "Expected a privilege URI without spaces.";
}

std::string AddGrant(Options& options, const std::string& name) {
  options.grants.push_back(name);
  return IsPermission(name) ? ""
                            : "Unknown permission \"" + name + "\". Use one of " + PermissionList() + ".";
}

std::string AddKey(Options& options, const std::string& text) {
  const size_t equals = text.find('=');
  std::istringstream code_text(equals == std::string::npos ? "" : text.substr(equals + 1));
  unsigned code = 0;
  if (FindRemoteKey(text.substr(0, equals)) == nullptr || !(code_text >> code) || code_text.peek() != EOF ||
      code > kMostKeyCode) {
    return "Expected a key and its code such as Back=27, not \"" + text + "\".";
  }
  options.key_codes[text.substr(0, equals)] = code;
  return "";
}

std::string SetInspector(Options& options, const std::string& text) {
  constexpr int kMostPort = 65535;
  std::istringstream stream(text);
  int port = -1;
  if (!(stream >> port) || stream.peek() != EOF || port < 0 || port > kMostPort)
    return "Expected a port from 0 (any) to 65535, not \"" + text + "\".";
  options.inspector_port = port;
  return "";
}

std::string SetSize(Options& options, const std::string& text) {
  const auto is_side = [](int side) { return side >= kSmallestSide && side <= kLargestSide; };
  std::istringstream stream(text);
  char times = 0;
  if (stream >> options.width >> times >> options.height && times == 'x' && stream.peek() == EOF &&
      is_side(options.width) && is_side(options.height)) {
    return "";
  }
  const auto limit = [](int side) { return std::to_string(side) + "x" + std::to_string(side); };
  return "Expected a size from " + limit(kSmallestSide) + " to " + limit(kLargestSide) +
         " such as 1920x1080, not \"" + text + "\".";
}

std::string SetHeadless(Options& options, const std::string& /*nothing*/) {
  options.is_headless = true;
  return "";
}

std::string SetSinglePage(Options& options, const std::string& /*nothing*/) {
  options.is_single_page = true;
  return "";
}

std::string SetProfile(Options& options, const std::string& folder) {
  options.profile = folder;
  return "";
}

std::string SetUserAgent(Options& options, const std::string& text) {
  options.user_agent = text;
  return "";
}

std::string SetPageScript(Options& options, const std::string& script) {
  options.page_script = script;
  return "";
}

std::string IgnoreTlsErrors(Options& options, const std::string& /*nothing*/) {
  options.are_tls_errors_ignored = true;
  return "";
}

std::string SetConsole(Options& options, const std::string& kind) {
  if (kind == "page")
    options.console = ConsoleKind::kPage;
  else if (kind == "all")
    options.console = ConsoleKind::kAll;
  else if (kind == "none")
    options.console = ConsoleKind::kNone;
  else
    return "Expected page, all or none, not \"" + kind + "\".";
  options.is_api_followed = options.is_api_followed || kind == "all";
  return "";
}

std::string FollowApi(Options& options, const std::string& /*nothing*/) {
  options.is_api_followed = true;
  return "";
}

bool IsLanguageTag(const std::string& text) {
  return g_regex_match_simple("^[A-Za-z]{2,8}(-[A-Za-z0-9]{1,8})*$", text.c_str(), GRegexCompileFlags(0),
                              GRegexMatchFlags(0)) != FALSE;
}

std::string SetLanguage(Options& options, const std::string& tag) {
  options.language = tag;
  return IsLanguageTag(tag) ? "" : "Expected a language tag such as de-AT, not \"" + tag + "\".";
}

// The language of a locale such as de_AT.UTF-8. C, POSIX and invalid locales are American English.
std::string LanguageOfEnvironment() {
  std::string locale;
  for (const char* name : {"LANG", "LC_MESSAGES", "LC_ALL"}) {
    const char* value = g_getenv(name);
    if (value != nullptr && *value != '\0') locale = value;
  }
  std::string tag = locale.substr(0, locale.find_first_of(".@"));
  std::replace(tag.begin(), tag.end(), '_', '-');
  return tag == "POSIX" || !IsLanguageTag(tag) ? "en-US" : tag;
}

struct OptionRow {
  const char* name;
  // The name of the value in the help; null for an option without a value.
  const char* value;
  const char* help;
  std::string (*set)(Options& options, const std::string& value);
};

constexpr OptionRow kRows[] = {
    {"app-id", "ID", "the application id, a dotted name (default com.example.app)", SetAppId},
    {"extension", "LIBRARY", "load an extension library; repeatable", AddExtension},
    {"privilege", "URI", "grant a privilege to the application; repeatable", AddPrivilege},
    {"grant", "NAME", "grant a permission to pages that request it; repeatable", AddGrant},
    {"key", "NAME=CODE", "the keyCode of a key, such as Back=27; repeatable", AddKey},
    {"inspect", "PORT", "serve the engine's inspector on this port of the loopback interface; 0: any",
     SetInspector},
    {"size", "WIDTHxHEIGHT", "the page's size in pixels (default 1920x1080)", SetSize},
    {"single-page", nullptr, "serve the page for paths without a file or extension, for client-side routers",
     SetSinglePage},
    {"language", "TAG", "the language that pages see, such as de-AT (default: the environment's)",
     SetLanguage},
    {"profile", "FOLDER", "folder for data that pages store (default: nothing is kept)", SetProfile},
    {"user-agent", "TEXT", "the user agent that pages and servers see", SetUserAgent},
    {"ignore-tls-errors", nullptr, "accept servers whose certificate is not trusted", IgnoreTlsErrors},
    {"page-script", "SCRIPT", "run this script in each page before its own", SetPageScript},
    {"headless", nullptr, "run without a window or display (starts an Xvfb)", SetHeadless},
    {"console", "KIND", "console lines to print: page (default), all (including script APIs), none",
     SetConsole},
    {"follow-api", nullptr, "report the lines of script APIs at once, not before the next reply", FollowApi},
};

// The codes of the options that have no row. The code of a row is its position in the table, counted from 1.
constexpr int kHelpLetter = 'h';
constexpr int kVersionLetter = 'v';
static_assert(std::size(kRows) < '?');

std::vector<option> GetoptTable() {
  std::vector<option> table;
  for (const OptionRow& row : kRows) {
    const int has_value = row.value == nullptr ? no_argument : required_argument;
    table.push_back({row.name, has_value, nullptr, static_cast<int>(table.size()) + 1});
  }
  table.push_back({"help", no_argument, nullptr, kHelpLetter});
  table.push_back({"version", no_argument, nullptr, kVersionLetter});
  table.push_back({});
  return table;
}

std::string Help() {
  constexpr size_t kColumn = 23;
  std::string text = kHelpHead;
  for (const OptionRow& row : kRows) {
    std::string left =
        std::string("  --") + row.name + (row.value == nullptr ? "" : std::string(" ") + row.value);
    left.resize(std::max(left.size() + 1, kColumn), ' ');
    text += left + row.help + "\n";
  }
  return text + kHelpFoot;
}

Exit WrongUsage(const std::string& what) {
  return {kExitUsage, "corvis-tv: " + what + " See corvis-tv --help.\n"};
}

}  // namespace

int Fail(ExitStatus status, const std::string& sentence) {
  std::fprintf(stderr, "corvis-tv: %s\n", sentence.c_str());
  return status;
}

std::variant<Options, Exit> ParseOptions(int argc, char** argv) {
  Options options;
  options.language = LanguageOfEnvironment();
  const std::vector<option> table = GetoptTable();
  opterr = 0;
  for (int letter = 0; (letter = getopt_long(argc, argv, ":", table.data(), nullptr)) != -1;) {
    if (letter == kHelpLetter) return Exit{kExitOk, Help()};
    if (letter == kVersionLetter) return Exit{kExitOk, "corvis-tv " CORVIS_VERSION "\n"};
    if (letter == ':') return WrongUsage(std::string(argv[optind - 1]) + " needs a value.");
    if (letter == '?') return WrongUsage("Unknown option " + std::string(argv[optind - 1]) + ".");
    const std::string wrong = kRows[letter - 1].set(options, optarg == nullptr ? "" : optarg);
    if (!wrong.empty()) return WrongUsage(wrong);
  }
  if (argc - optind != 1) return WrongUsage("Expected one URL, HTML file or folder.");
  options.page = argv[optind];
  return options;
}

}  // namespace corvis::tv
