// Reading the command line.
#include "launcher/options.h"

#include <getopt.h>
#include <gio/gio.h>

#include <cstdio>

#include "corvis_tv/control.h"
#include "corvis_tv/remote_keys.h"

namespace corvis::tv {

namespace {

constexpr const char* kUsage = R"(Usage: corvis-tv [OPTIONS] URL|FILE|FOLDER

Runs a web application as a TV would, with the extension libraries that are given.

  --app-id ID          the application's id, a dotted name (default com.example.app)
  --extension LIBRARY  an extension library to load; repeatable
  --privilege URI      a privilege that the application holds; repeatable
  --key NAME=CODE      the keyCode that pages get of a key, such as Back=27; repeatable
  --size WIDTHxHEIGHT  size of the page in pixels (default 1920x1080)
  --single-page        a path that names no file and has no ending gives the page, as routers want it
  --headless           without a window; needs no display (starts an Xvfb of its own)
  --console KIND       what of the console goes to the terminal: page (default), all (script APIs too), none
  --help, --version

The folder of FILE, or FOLDER (with an index.html), is served over HTTP to this run only, as an origin of its own. Only
pages of the origin that is started with get the extensions' APIs.

Needs a D-Bus session bus, on which it serves its control interface as ID.runtime.

Exit status: 0 ended as asked, 2 wrong usage, 3 the page can't be loaded, 4 the page's process keeps crashing,
5 the application is running already, 6 no bus or no display.
)";

constexpr option kOptions[] = {{"app-id", required_argument, nullptr, 'a'},
                               {"extension", required_argument, nullptr, 'e'},
                               {"privilege", required_argument, nullptr, 'p'},
                               {"size", required_argument, nullptr, 's'},
                               {"headless", no_argument, nullptr, 'l'},
                               {"single-page", no_argument, nullptr, 'i'},
                               {"key", required_argument, nullptr, 'k'},
                               {"console", required_argument, nullptr, 'c'},
                               {"help", no_argument, nullptr, 'h'},
                               {"version", no_argument, nullptr, 'v'},
                               {nullptr, 0, nullptr, 0}};

constexpr int kLargestSide = 16384;

Exit WrongUsage(const std::string& what) {
  return {kExitUsage, "corvis-tv: " + what + " See corvis-tv --help.\n"};
}

// Takes "NAME=CODE".
bool TakeKey(const std::string& value, KeyCodes& codes) {
  const size_t equals = value.find('=');
  char rest = 0;
  unsigned code = 0;
  if (equals == std::string::npos || FindRemoteKey(value.substr(0, equals)) == nullptr ||
      std::sscanf(value.c_str() + equals + 1, "%u%c", &code, &rest) != 1 || code > kMostKeyCode)
    return false;
  codes[value.substr(0, equals)] = code;
  return true;
}

// Applies one option. Returns what is wrong with it, empty when nothing is.
std::string Apply(int letter, const std::string& value, Options& options) {
  switch (letter) {
    case 'a':
      options.app_id = value;
      // The control name appends an element of its own.
      if (g_dbus_is_name((value + kControlNameSuffix).c_str()) && value.find('.') != std::string::npos &&
          value[0] != ':')
        return "";
      return "\"" + value + "\" is no application id; it takes a dotted name such as com.example.app.";
    case 'e':
      options.extensions.push_back(value);
      return g_file_test(value.c_str(), G_FILE_TEST_EXISTS) != FALSE
                 ? ""
                 : "There is no extension library " + value + "; build it, or give another --extension.";
    case 'p':
      options.privileges.push_back(value);
      return value.find_first_of(" \n") == std::string::npos ? "" : "A privilege URI has no blanks.";
    case 'k':
      return TakeKey(value, options.key_codes) ? "" : "\"" + value + "\" is no key and code such as Back=27.";
    case 's': {
      char rest = 0;
      const bool is_size =
          std::sscanf(value.c_str(), "%dx%d%c", &options.width, &options.height, &rest) == 2 &&
          options.width > 0 && options.height > 0 && options.width <= kLargestSide &&
          options.height <= kLargestSide;
      return is_size ? "" : "\"" + value + "\" is no size; it takes one such as 1920x1080.";
    }
    case 'l':
      options.is_headless = true;
      return "";
    case 'i':
      options.is_single_page = true;
      return "";
    case 'c':
      options.console = value == "all"    ? ConsoleKind::kAll
                        : value == "none" ? ConsoleKind::kNone
                                          : ConsoleKind::kPage;
      return value == "page" || options.console != ConsoleKind::kPage
                 ? ""
                 : "\"" + value + "\" is no console; there are page, all and none.";
    default:
      return "";
  }
}

}  // namespace

std::variant<Options, Exit> ParseOptions(int argc, char** argv) {
  Options options;
  opterr = 0;
  for (int letter = 0; (letter = getopt_long(argc, argv, ":", kOptions, nullptr)) != -1;) {
    if (letter == 'h') return Exit{kExitOk, kUsage};
    if (letter == 'v') return Exit{kExitOk, "corvis-tv " CORVIS_VERSION "\n"};
    if (letter == ':') return WrongUsage(std::string(argv[optind - 1]) + " needs a value.");
    if (letter == '?') return WrongUsage("There is no option " + std::string(argv[optind - 1]) + ".");
    const std::string wrong = Apply(letter, optarg == nullptr ? "" : optarg, options);
    if (!wrong.empty()) return WrongUsage(wrong);
  }
  if (argc - optind != 1) return WrongUsage("It takes one URL, HTML file or folder.");
  options.page = argv[optind];
  return options;
}

}  // namespace corvis::tv
