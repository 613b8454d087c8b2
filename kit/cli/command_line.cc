// Parses options with CLI11. Operands and subcommands are handled here instead, because this version of CLI11
// passes the arguments after "--" to a subcommand's parent and treats an operand in brackets as a list.
#include "cli/command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <utility>

#include "language/suggestions.h"

namespace corvis::kit {

namespace {

constexpr size_t kLeftColumn = 21;

// Wraps a check so that it returns a whole error message.
Check Refusal(const Check& check) {
  return [check](const std::string& value) {
    const std::string expected = check ? check(value) : "";
    return expected.empty() ? "" : "Expected " + expected + ", not \"" + value + "\".";
  };
}

// Splits "--name=" into the name and an empty value. CLI11 would report a missing value.
void SplitEmptyValues(std::vector<std::string>& arguments) {
  for (auto it = arguments.begin(); it != arguments.end() && *it != "--"; ++it) {
    const bool is_empty_value =
        it->size() > 3 && it->compare(0, 2, "--") == 0 && it->find('=') == it->size() - 1;
    if (!is_empty_value) continue;
    it->pop_back();
    it = arguments.insert(it + 1, "");
  }
}

// The error message without CLI11's "--name: " prefix, and in our words for a missing or unexpected value.
std::string SentenceOf(const CLI::ParseError& error) {
  std::string text = error.what();
  const size_t colon = text.find(':');
  if (error.get_name() != "ArgumentMismatch") return text;
  if (colon != std::string::npos) return "Option " + text.substr(0, colon) + " needs a value.";
  return "Option --" + text.substr(0, text.find(' ')) + " takes no value.";
}

std::vector<std::string> OptionNames(const CLI::App& app) {
  std::vector<std::string> names;
  for (const CLI::Option* option : app.get_options()) {
    for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
  }
  return names;
}

// The operands among the arguments that CLI11 did not consume. Fails on an undeclared option.
Result<std::vector<std::string>> OperandsIn(const CLI::App& app) {
  std::vector<std::string> operands;
  bool are_options_over = false;
  for (const std::string& argument : app.remaining()) {
    if (!are_options_over && argument == "--") {
      are_options_over = true;
    } else if (!are_options_over && argument.size() > 1 && argument[0] == '-') {
      const std::string name = argument.substr(0, argument.find('='));
      return Fail("Unknown option " + name + "." + DidYouMean(name, OptionNames(app)), ErrorKind::kUsage);
    } else {
      operands.push_back(argument);
    }
  }
  return operands;
}

std::string DescribeOption(const CLI::Option& option) {
  const std::string value = option.get_type_name();
  const std::string fallback = option.get_default_str();
  const bool is_separate = !value.empty() && value[0] != '[';
  return HelpLine("--" + option.get_lnames().front() + (is_separate ? " " : "") + value,
                  option.get_description() + (fallback.empty() ? "" : " (default " + fallback + ")"));
}

}  // namespace

Check WholeNumber(long most) {
  return [most](const std::string& value) {
    long number = 0;
    const char* end = value.data() + value.size();
    const auto [rest, error] = std::from_chars(value.data(), end, number);
    const bool is_number = error == std::errc() && rest == end && number > 0 && number <= most;
    return is_number ? "" : "a whole number from 1 to " + std::to_string(most);
  };
}

void Describe(CLI::App& app, const std::string& text) {
  app.description(text);
}

void AddFooter(CLI::App& app, const std::string& text) {
  app.footer(text);
}

void BeginGroup(CLI::App& app, const std::string& heading) {
  app.option_defaults()->group(heading);
}

void AddFlag(CLI::App& app, const std::string& name, const std::string& help, std::function<void()> set) {
  app.add_flag_callback(name, std::move(set), help)
      ->trigger_on_parse()
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeLast)
      ->disable_flag_override();
}

void AddFlag(CLI::App& app, const std::string& name, const std::string& help, bool& flag) {
  AddFlag(app, name, help, [&flag] { flag = true; });
}

void AddValue(CLI::App& app, const std::string& name, const std::string& value_name, const std::string& help,
              const std::string& fallback, const Check& check,
              const std::function<void(const std::string&)>& take) {
  app.add_option_function<std::string>(name, take, help)
      ->type_name(value_name)
      ->take_last()
      ->check(Refusal(check))
      ->default_str(fallback);
}

void AddOptionalValue(CLI::App& app, const std::string& name, const std::string& value_name,
                      const std::string& help, const std::string& implied, std::string& text) {
  app.add_flag(name + "{" + implied + "}", text, help)->type_name("[=" + value_name + "]")->take_last();
}

void AddText(CLI::App& app, const std::string& name, const std::string& value_name, const std::string& help,
             std::string& text, const Check& check) {
  AddValue(app, name, value_name, help, text, check, [&text](const std::string& value) { text = value; });
}

void AddList(CLI::App& app, const std::string& name, const std::string& value_name, const std::string& help,
             std::vector<std::string>& values, const Check& check) {
  app.add_option(name, values, help)->type_name(value_name)->allow_extra_args(false)->check(Refusal(check));
}

void AddNumber(CLI::App& app, const std::string& name, const std::string& value_name, const std::string& help,
               long most, long& number) {
  AddValue(app, name, value_name, help, number > 0 ? std::to_string(number) : "", WholeNumber(most),
           [&number](const std::string& text) { number = std::stol(text); });
}

Result<Arguments> ParseArguments(CLI::App& app, std::vector<std::string> arguments) {
  SplitEmptyValues(arguments);
  std::reverse(arguments.begin(), arguments.end());
  app.allow_extras();
  try {
    app.parse(std::move(arguments));
  } catch (const CLI::CallForHelp&) {
    return Arguments{true, {}};
  } catch (const CLI::ParseError& error) {
    return Fail(SentenceOf(error), ErrorKind::kUsage);
  }
  auto operands = OperandsIn(app);
  if (!operands) return Fail(operands.error());
  return Arguments{false, std::move(*operands)};
}

std::string DescribeOptions(const CLI::App& app) {
  std::string text;
  for (const std::string& group : app.get_groups()) {
    // Options for this program's own use have no group.
    if (group.empty()) continue;
    text += "\n" + group + "\n";
    for (const CLI::Option* option : app.get_options()) {
      if (option->get_group() == group) text += DescribeOption(*option);
    }
  }
  return text;
}

std::string HelpLine(const std::string& left, const std::string& right) {
  const size_t gap = left.size() < kLeftColumn ? kLeftColumn - left.size() : 2;
  return "  " + left + std::string(gap, ' ') + right + "\n";
}

}  // namespace corvis::kit
