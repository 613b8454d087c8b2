// Reading the command line, by a table with a row for each option.
#include "launcher/options.h"

#include <getopt.h>
#include <gio/gio.h>

#include <algorithm>
#include <iterator>
#include <sstream>

#include "corvis_tv/control.h"
#include "corvis_tv/remote_keys.h"
#include "launcher/user_requests.h"

namespace corvis::tv {

namespace {

constexpr const char* kHelpHead = R"(Usage: corvis-tv [OPTIONS] URL|FILE|FOLDER

Runs a web application as a TV would, with the extension libraries that are given.

)";

constexpr const char* kHelpFoot = R"(  --help, --version

The folder of FILE, or FOLDER (with an index.html), is served over HTTP to this run only, as an origin of its own. Only
pages of the origin that is started with get the extensions' APIs.

Needs a D-Bus session bus, on which it serves its control interface as ID.runtime.

Exit status: 0 ended as asked, 2 wrong usage, 3 the page can't be loaded, 4 the page's process keeps crashing,
5 the application is running already, 6 no bus or no display.
)";

constexpr int kSmallestSide = 16;
constexpr int kLargestSide = 8192;

// Setters return what is wrong with a value, empty when nothing is.

std::string SetAppId(Options& options, const std::string& id) {
  options.app_id = id;
  // The control name appends an element of its own.
  const bool is_id = g_dbus_is_name((id + kControlNameSuffix).c_str()) != FALSE &&
                     id.find('.') != std::string::npos && id[0] != ':';
  return is_id ? "" : "\"" + id + "\" is no application id. Expected a dotted name such as com.example.app.";
}

std::string AddExtension(Options& options, const std::string& path) {
  options.extensions.push_back(path);
  return g_file_test(path.c_str(), G_FILE_TEST_EXISTS) != FALSE
             ? ""
             : "There is no extension library " + path + "; build it, or give another --extension.";
}

std::string AddPrivilege(Options& options, const std::string& uri) {
  options.privileges.push_back(uri);
  return uri.find_first_of(" \t\n") == std::string::npos ? "" : "A privilege URI has no spaces.";
}

std::string Joined(const std::vector<std::string>& names) {
  std::string text;
  for (const std::string& name : names) text += (text.empty() ? "" : ", ") + name;
  return text;
}

std::string AddGrant(Options& options, const std::string& name) {
  options.grants.push_back(name);
  const std::vector<std::string> names = GrantNames();
  return std::find(names.begin(), names.end(), name) != names.end()
             ? ""
             : "Unknown permission \"" + name + "\". Use one of " + Joined(names) + ".";
}

std::string AddKey(Options& options, const std::string& text) {
  const size_t equals = text.find('=');
  std::istringstream code_text(equals == std::string::npos ? "" : text.substr(equals + 1));
  unsigned code = 0;
  if (FindRemoteKey(text.substr(0, equals)) == nullptr || !(code_text >> code) || code_text.peek() != EOF ||
      code > kMostKeyCode) {
    return "\"" + text + "\" is no key and code. Expected one such as Back=27.";
  }
  options.key_codes[text.substr(0, equals)] = code;
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
  return "\"" + text + "\" is no size. Expected one from " + limit(kSmallestSide) + " to " +
         limit(kLargestSide) + ", such as 1920x1080.";
}

std::string SetHeadless(Options& options, const std::string& /*nothing*/) {
  options.is_headless = true;
  return "";
}

std::string SetSinglePage(Options& options, const std::string& /*nothing*/) {
  options.is_single_page = true;
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
    return "\"" + kind + "\" is no console. Use page, all or none.";
  return "";
}

struct OptionRow {
  const char* name;
  // What the value is, for the help; null for an option without a value.
  const char* value;
  const char* help;
  std::string (*set)(Options& options, const std::string& value);
};

constexpr OptionRow kRows[] = {
    {"app-id", "ID", "the application's id, a dotted name (default com.example.app)", SetAppId},
    {"extension", "LIBRARY", "an extension library to load; repeatable", AddExtension},
    {"privilege", "URI", "a privilege that the application holds; repeatable", AddPrivilege},
    {"grant", "NAME", "a permission that pages get when they ask for it; repeatable", AddGrant},
    {"key", "NAME=CODE", "the keyCode that pages get of a key, such as Back=27; repeatable", AddKey},
    {"size", "WIDTHxHEIGHT", "size of the page in pixels (default 1920x1080)", SetSize},
    {"single-page", nullptr, "a path that names no file and has no ending gives the page, as routers want it",
     SetSinglePage},
    {"headless", nullptr, "without a window; needs no display (starts an Xvfb of its own)", SetHeadless},
    {"console", "KIND",
     "what of the console goes to the terminal: page (default), all (script APIs too), none", SetConsole},
};

// The letters of the options that are no rows; rows have their place in the table, counted from 1.
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

std::variant<Options, Exit> ParseOptions(int argc, char** argv) {
  Options options;
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
