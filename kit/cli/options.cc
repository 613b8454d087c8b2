// Reading the command line.
#include "cli/options.h"

#include <getopt.h>

#include <charconv>
#include <string_view>

namespace corvis::kit {

namespace {

constexpr const char* kUsage = R"(Usage: corvis-voice [OPTIONS]

Plays the TV's voice service for one application: takes phrases and raw commands at a prompt or from standard
input, or runs voice scripts.

  --app ID            the application (default com.example.app)
  --timeout MS        how long an answer may take (default 5000)
  --help, --version

At the prompt, help lists what can be said.

With scripts
  --script FILE       run a voice script instead of a prompt; repeatable
  --tap               print TAP 14 (default: a table for people)
  --json              print one JSON event a line
  --junit FILE        write a JUnit report, too
  --coverage          say which of the page's actions were spoken
  --coverage-min N    fail when less than N percent of them were
  --screenshots DIR   where pictures of failures go (default: beside the JUnit report; none without one)
  --privilege NAME    what the application was given; each script begins with it; repeatable
  --total-timeout S   how long the whole run may take (default 600)
  --pace MS           wait before each thing said, for people who watch
  --check             only read the scripts

Instead of a prompt
  --items [--png FILE] [--json]  what can be selected on the screen; --png: a picture with the numbers on it;
                                 --json: the page's answer as it is
  --lint [--call] [--json]       look for what would make voice fail on the page; --call: call its callbacks, too

Exit status: 0 ended, or every expectation held; 1 an expectation failed, or lint found something; 2 wrong usage
or a script with errors; 3 the application did not register; 6 no bus; 7 less coverage than --coverage-min;
8 the time for the whole run was over; 130 interrupted.
)";

constexpr option kOptions[] = {{"app", required_argument, nullptr, 'a'},
                               {"timeout", required_argument, nullptr, 't'},
                               {"total-timeout", required_argument, nullptr, 'T'},
                               {"script", required_argument, nullptr, 's'},
                               {"narrate", no_argument, nullptr, 'n'},
                               {"tap", no_argument, nullptr, 'p'},
                               {"json", no_argument, nullptr, 'j'},
                               {"junit", required_argument, nullptr, 'J'},
                               {"coverage", no_argument, nullptr, 'c'},
                               {"coverage-min", required_argument, nullptr, 'C'},
                               {"screenshots", required_argument, nullptr, 'S'},
                               {"privilege", required_argument, nullptr, 'P'},
                               {"pace", required_argument, nullptr, 'w'},
                               {"check", no_argument, nullptr, 'k'},
                               {"items", no_argument, nullptr, 'i'},
                               {"png", required_argument, nullptr, 'g'},
                               {"lint", no_argument, nullptr, 'l'},
                               {"call", no_argument, nullptr, 'L'},
                               {"help", no_argument, nullptr, 'h'},
                               {"version", no_argument, nullptr, 'v'},
                               {nullptr, 0, nullptr, 0}};

Exit WrongUsage(const std::string& what) {
  return {kExitUsage, "corvis-voice: " + what + " See corvis-voice --help.\n"};
}

bool ReadPositive(const char* text, long& number) {
  const std::string_view digits = text;
  constexpr long kMost = 86'400'000;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  return error == std::errc() && end == digits.data() + digits.size() && number > 0 && number <= kMost;
}

// The options that have no value. False for another letter.
bool TakeFlag(int letter, Options& options) {
  switch (letter) {
    case 'n':
      options.output = Output::kNarration;
      return true;
    case 'p':
      options.output = Output::kTap;
      return true;
    case 'j':
      options.output = Output::kJson;
      return true;
    case 'c':
      options.is_coverage_shown = true;
      return true;
    case 'k':
      options.is_check_only = true;
      return true;
    case 'l':
      options.job = Job::kLint;
      return true;
    case 'i':
      options.job = Job::kItems;
      return true;
    case 'L':
      options.is_calling = true;
      return true;
    default:
      return false;
  }
}

// The options with a number; a sentence when it is none.
std::string TakeNumber(int letter, const char* text, Options& options) {
  constexpr long kPercent = 100;
  long number = 0;
  const bool is_number = ReadPositive(text, number);
  if (letter == 't') options.timeout = std::chrono::milliseconds(number);
  if (letter == 'T') options.total_timeout = std::chrono::seconds(number);
  if (letter == 'w') options.pace = std::chrono::milliseconds(number);
  if (letter == 'C') options.least_coverage = number;
  if (letter == 'C' && (!is_number || number > kPercent)) return "--coverage-min takes a percentage.";
  if (is_number) return "";
  if (letter == 'w') return "--pace takes milliseconds.";
  return letter == 't' ? "--timeout takes milliseconds." : "--total-timeout takes seconds.";
}

}  // namespace

std::variant<Options, Exit> ParseOptions(int argc, char** argv) {
  Options options;
  opterr = 0;
  for (int letter = 0; (letter = getopt_long(argc, argv, ":", kOptions, nullptr)) != -1;) {
    if (TakeFlag(letter, options)) continue;
    std::string problem;
    switch (letter) {
      case 'h':
        return Exit{kExitOk, kUsage};
      case 'v':
        return Exit{kExitOk, "corvis-voice " CORVIS_VERSION "\n"};
      case 'a':
        options.app_id = optarg;
        break;
      case 's':
        options.job = Job::kScripts;
        options.scripts.emplace_back(optarg);
        break;
      case 'g':
        options.png_file = optarg;
        break;
      case 'J':
        options.junit_file = optarg;
        break;
      case 'S':
        options.screenshot_folder = optarg;
        break;
      case 'P':
        options.privileges.emplace_back(optarg);
        break;
      case 't':
      case 'T':
      case 'C':
      case 'w':
        problem = TakeNumber(letter, optarg, options);
        break;
      case ':':
        problem = std::string(argv[optind - 1]) + " needs a value.";
        break;
      default:
        problem = "There is no option " + std::string(argv[optind - 1]) + ".";
    }
    if (!problem.empty()) return WrongUsage(problem);
  }
  if (optind < argc) return WrongUsage("It takes no " + std::string(argv[optind]) + ".");
  if (options.is_check_only && options.scripts.empty()) return WrongUsage("--check needs a --script.");
  return options;
}

}  // namespace corvis::kit
