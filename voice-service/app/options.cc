// Reading the command line.
#include "app/options.h"

#include <getopt.h>

#include <charconv>
#include <string_view>

namespace corvis::voice {

namespace {

constexpr const char* kUsage = R"(Usage: corvis-voice [OPTIONS]

Plays the TV's voice service for one application: takes phrases and raw commands at a prompt or from standard
input, or runs voice scripts.

  --app ID            the application (default com.example.app)
  --timeout MS        how long an answer may take (default 5000)
  --total-timeout S   how long a run of scripts may take (default 600)
  --script FILE       run a voice script instead of a prompt; repeatable
  --narrate           tell a script's run as a table
  --help, --version

At the prompt, help lists what can be said.

Exit status: 0 ended, or every expectation held; 1 an expectation failed; 2 wrong usage or a script with errors;
3 the application did not register; 6 no bus; 130 interrupted.
)";

constexpr option kOptions[] = {{"app", required_argument, nullptr, 'a'},
                               {"timeout", required_argument, nullptr, 't'},
                               {"total-timeout", required_argument, nullptr, 'T'},
                               {"script", required_argument, nullptr, 's'},
                               {"narrate", no_argument, nullptr, 'n'},
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

}  // namespace

std::variant<Options, Exit> ParseOptions(int argc, char** argv) {
  Options options;
  opterr = 0;
  long number = 0;
  for (int letter = 0; (letter = getopt_long(argc, argv, ":", kOptions, nullptr)) != -1;) {
    switch (letter) {
      case 'h':
        return Exit{kExitOk, kUsage};
      case 'v':
        return Exit{kExitOk, "corvis-voice " CORVIS_VERSION "\n"};
      case 'a':
        options.app_id = optarg;
        break;
      case 's':
        options.scripts.emplace_back(optarg);
        break;
      case 'n':
        options.is_narrated = true;
        break;
      case 't':
        if (!ReadPositive(optarg, number)) return WrongUsage("--timeout takes milliseconds.");
        options.timeout = std::chrono::milliseconds(number);
        break;
      case 'T':
        if (!ReadPositive(optarg, number)) return WrongUsage("--total-timeout takes seconds.");
        options.total_timeout = std::chrono::seconds(number);
        break;
      case ':':
        return WrongUsage(std::string(argv[optind - 1]) + " needs a value.");
      default:
        return WrongUsage("There is no option " + std::string(argv[optind - 1]) + ".");
    }
  }
  if (optind < argc) return WrongUsage("It takes no " + std::string(argv[optind]) + ".");
  return options;
}

}  // namespace corvis::voice
