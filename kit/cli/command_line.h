// Declares a command's options and parses its arguments. Each option is declared once, with its help, check
// and default; parsing, help text and error messages are derived from that.
#ifndef CORVIS_KIT_CLI_COMMAND_LINE_H_
#define CORVIS_KIT_CLI_COMMAND_LINE_H_

#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include "base/result.h"

// Only the files that look into options include the header of the library that parses them: it takes seconds
// to compile.
namespace CLI {
class App;
}

namespace corvis::kit {

// Returns what was expected, such as "a size such as 1920x1080"; empty if the value is valid.
using Check = std::function<std::string(const std::string& value)>;

// A whole number from 1 to `most`.
Check WholeNumber(long most);

// Sets the text at the beginning of a command's help, and the one at its end.
void Describe(CLI::App& app, const std::string& text);
void AddFooter(CLI::App& app, const std::string& text);

// The heading of the options that are added from now on; "" hides them from the help.
void BeginGroup(CLI::App& app, const std::string& heading);

// Adds an option without a value. If several flags set the same variable, the last one on the command line
// counts.
void AddFlag(CLI::App& app, const std::string& name, const std::string& help, std::function<void()> set);
void AddFlag(CLI::App& app, const std::string& name, const std::string& help, bool& flag);

// Adds an option with a value: `value_name` in the help, passed to `take`. The last one on the command line
// counts. `fallback` is the default that the help shows.
void AddValue(CLI::App& app, const std::string& name, const std::string& value_name, const std::string& help,
              const std::string& fallback, const Check& check,
              const std::function<void(const std::string&)>& take);

// Adds an option whose value can be left out (--name, --name=VALUE), and is `implied` then.
void AddOptionalValue(CLI::App& app, const std::string& name, const std::string& value_name,
                      const std::string& help, const std::string& implied, std::string& text);

// Adds an option that sets a text, whose current value is the default.
void AddText(CLI::App& app, const std::string& name, const std::string& value_name, const std::string& help,
             std::string& text, const Check& check = {});

// Adds a repeatable option. Its values replace the current ones in `values`.
void AddList(CLI::App& app, const std::string& name, const std::string& value_name, const std::string& help,
             std::vector<std::string>& values, const Check& check = {});

// Adds an option with a whole number from 1 to `most`. The help shows no default if `number` is 0.
void AddNumber(CLI::App& app, const std::string& name, const std::string& value_name, const std::string& help,
               long most, long& number);

// Adds an option with a time from 1 unit to one day, in the unit of `time`.
template <typename Duration>
void AddTime(CLI::App& app, const std::string& name, const std::string& value_name, const std::string& help,
             Duration& time) {
  const long day = std::chrono::duration_cast<Duration>(std::chrono::hours(24)).count();
  AddValue(app, name, value_name, help, std::to_string(time.count()), WholeNumber(day),
           [&time](const std::string& text) { time = Duration(std::stol(text)); });
}

struct Arguments {
  // Help was requested; the other arguments were not checked.
  bool is_help = false;
  // All arguments that are not options, and everything after "--".
  std::vector<std::string> operands;
};

// Parses the arguments and sets the variables of the declared options. Fails with kUsage.
Result<Arguments> ParseArguments(CLI::App& app, std::vector<std::string> arguments);

// The help text for the options, with a heading for each group.
std::string DescribeOptions(const CLI::App& app);

// One line of help in two columns.
std::string HelpLine(const std::string& left, const std::string& right);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_CLI_COMMAND_LINE_H_
