// What arguments mean, and what is said when they are wrong.
#include "cli/command_line.h"

#include <gtest/gtest.h>
#include <CLI/CLI.hpp>

namespace corvis::kit {

namespace {

// A command line with one option of every sort, and what it has become.
struct Options {
  bool is_json = false;
  bool is_window = false;
  std::string file = "none";
  std::vector<std::string> names = {"one", "two"};
  long count = 7;
  std::chrono::seconds time{600};

  void Declare(CLI::App& app) {
    AddFlag(app, "--json", "as JSON", is_json);
    AddFlag(app, "--window", "in a window", [this] { is_window = true; });
    AddFlag(app, "--headless", "without", [this] { is_window = false; });
    AddText(app, "--file", "FILE", "a file", file);
    AddList(app, "--name", "NAME", "a short name", names,
            [](const std::string& name) { return name.size() < 4 ? "" : "a short name"; });
    AddNumber(app, "--count", "N", "a count", 100, count);
    AddTime(app, "--time", "S", "a time", time);
  }

  std::string Text() const {
    std::string text = std::string(is_json ? "json " : "") + (is_window ? "window " : "") + file;
    for (const std::string& name : names) text += " " + name;
    return text + " " + std::to_string(count) + " " + std::to_string(time.count());
  }
};

// What was set, and the operands in brackets; or the error.
std::string Parsed(const std::vector<std::string>& arguments) {
  CLI::App app;
  Options options;
  options.Declare(app);
  const auto parsed = ParseArguments(app, arguments);
  if (!parsed) return parsed.error().message;
  if (parsed->is_help) return "help";
  std::string text = options.Text();
  for (const std::string& operand : parsed->operands) text += " [" + operand + "]";
  return text;
}

TEST(CommandLine, ArgumentsSetWhatTheyMean) {
  const std::string defaults = "none one two 7 600";
  const std::pair<std::vector<std::string>, std::string> rows[] = {
      {{}, defaults},
      {{"a", "--json", "b"}, "json " + defaults + " [a] [b]"},
      {{"--file", "x", "--file=y"}, "y one two 7 600"},
      {{"--file=", "a"}, " one two 7 600 [a]"},
      {{"--file", "--json"}, "--json one two 7 600"},
      {{"--name=a", "--name", "b", "c"}, "none a b 7 600 [c]"},
      {{"--window", "--json", "--headless", "--json"}, "json " + defaults},
      {{"--headless", "--window"}, "window " + defaults},
      {{"--count", "100", "--time=1"}, "none one two 100 1"},
      {{"a:b", "-", "[c]", "d=e", ""}, defaults + " [a:b] [-] [[c]] [d=e] []"},
      {{"--", "-a", "--json", "--"}, defaults + " [-a] [--json] [--]"},
      {{"a", "--", "--", "b"}, defaults + " [a] [--] [b]"},
      {{"x", "--help"}, "help"},
  };
  for (const auto& [arguments, expected] : rows)
    EXPECT_EQ(Parsed(arguments), expected) << testing::PrintToString(arguments);
}

TEST(CommandLine, WrongUsageIsOneSentence) {
  const std::pair<std::vector<std::string>, std::string> rows[] = {
      {{"--jsno"}, "Unknown option --jsno. Did you mean \"--json\"?"},
      {{"a", "--colour=red", "b"}, "Unknown option --colour."},
      {{"-x", "--", "-y"}, "Unknown option -x."},
      {{"--file"}, "Option --file needs a value."},
      {{"--json=yes"}, "Option --json takes no value."},
      {{"--name", "long name"}, "--name: Expected a short name, not \"long name\"."},
      {{"--count", "0"}, "--count: Expected a whole number from 1 to 100, not \"0\"."},
      {{"--count", "101"}, "--count: Expected a whole number from 1 to 100, not \"101\"."},
      {{"--count="}, "--count: Expected a whole number from 1 to 100, not \"\"."},
      {{"--time", "1e3"}, "--time: Expected a whole number from 1 to 86400, not \"1e3\"."},
  };
  for (const auto& [arguments, expected] : rows)
    EXPECT_EQ(Parsed(arguments), expected) << testing::PrintToString(arguments);
}

}  // namespace

}  // namespace corvis::kit
