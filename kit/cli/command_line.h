// Declaring the options of a command, and reading its arguments. An option is declared once, with what it is
// for, its check and its default; the parsing, the help and the sentences about wrong usage follow from that.
#ifndef CORVIS_KIT_CLI_COMMAND_LINE_H_
#define CORVIS_KIT_CLI_COMMAND_LINE_H_

#include <CLI/CLI.hpp>
#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include "base/result.h"

namespace corvis::kit {

// Gives what was expected, as "a size such as 1920x1080"; empty when the value is that.
using Check = std::function<std::string(const std::string& value)>;

// A whole number from 1 to `most`.
Check WholeNumber(long most);

// An option without a value. Like every option, it belongs to the group of app.option_defaults(). Where
// several flags set the same thing, the last one given counts.
void AddFlag(CLI::App& app, const std::string& name, const std::string& help, std::function<void()> set);
void AddFlag(CLI::App& app, const std::string& name, const std::string& help, bool& flag);

// An option with a value, which the help calls `value_name` and `take` gets. The last one given counts.
// `fallback` is the default as the help shows it.
void AddValue(CLI::App& app, const std::string& name, const std::string& value_name, const std::string& help,
              const std::string& fallback, const Check& check,
              const std::function<void(const std::string&)>& take);

// The same for a text; what it holds now is the default.
void AddText(CLI::App& app, const std::string& name, const std::string& value_name, const std::string& help,
             std::string& text, const Check& check = {});

// An option that may be repeated. Given at all, it replaces what `values` holds now.
void AddList(CLI::App& app, const std::string& name, const std::string& value_name, const std::string& help,
             std::vector<std::string>& values, const Check& check = {});

// An option with a whole number from 1 to `most`. There is no default in the help when `number` is 0.
void AddNumber(CLI::App& app, const std::string& name, const std::string& value_name, const std::string& help,
               long most, long& number);

// An option with a time from 1 to a day, in the unit of `time`.
template <typename Duration>
void AddTime(CLI::App& app, const std::string& name, const std::string& value_name, const std::string& help,
             Duration& time) {
  const long day = std::chrono::duration_cast<Duration>(std::chrono::hours(24)).count();
  AddValue(app, name, value_name, help, std::to_string(time.count()), WholeNumber(day),
           [&time](const std::string& text) { time = Duration(std::stol(text)); });
}

struct Arguments {
  // Help was asked for; nothing else was looked at.
  bool is_help = false;
  // What is no option, and everything after "--".
  std::vector<std::string> operands;
};

// Sets what the options declare. Fails with kUsage.
Result<Arguments> ParseArguments(CLI::App& app, std::vector<std::string> arguments);

// The options as the help lists them, with the headings of their groups.
std::string DescribeOptions(const CLI::App& app);

// Two columns as the help has them.
std::string HelpLine(const std::string& left, const std::string& right);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_CLI_COMMAND_LINE_H_
