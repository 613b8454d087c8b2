// The table of commands, their help, and the dispatch from arguments to a command.
#include "cli/commands.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iterator>

#include "cli/application.h"
#include "cli/command_line.h"
#include "language/suggestions.h"
#include "output/output_file.h"

namespace corvis::kit {

namespace {

// The number of operands that a command accepts, and their description for the error message.
struct Operands {
  const char* usage;
  size_t least;
  size_t most;
  const char* expected;
};
constexpr Operands kNone = {"", 0, 0, ""};
constexpr Operands kPage = {"URL|FILE|FOLDER", 1, 1, "a URL, an HTML file or a folder with an index.html"};
constexpr Operands kPageAtMost = {"[URL|FILE|FOLDER]", 0, 1, ""};
constexpr Operands kPageAndScripts = {"URL|FILE|FOLDER SCRIPT|FOLDER|SCRIPT:LINE...", 2,
                                      static_cast<size_t>(-1), "an application and a voice script"};
constexpr Operands kEvents = {"FILE...", 1, static_cast<size_t>(-1),
                              "files with the output of corvis test-app --json"};

struct CommandRow {
  // The heading under which the help lists the command.
  const char* heading;
  const char* name;
  const Operands& operands;
  const char* summary;
  std::unique_ptr<Subcommand> (*make)();
};

// Of an application that somebody develops.
bool HasConfiguration(const CommandRow& row) {
  return row.operands.least > 0;
}

constexpr const char* kTry = "Try an application";
constexpr const char* kTest = "Test an application";

const CommandRow kCommands[] = {
    {kTry, "demo", kNone, "run the example application and hold a short conversation with it",
     MakeDemoCommand},
    {kTry, "run", kPage, "run your own page, with a prompt for phrases", MakeRunCommand},
    {kTry, "doctor", kNone, "report what this machine can play and show, and what to install",
     MakeDoctorCommand},
    {kTry, "init", kPageAtMost, "write a configuration and a first test into the present folder",
     MakeInitCommand},
    {kTest, "test-app", kPageAndScripts, "run voice scripts against an application", MakeTestAppCommand},
    {kTest, "merge-reports", kEvents, "report several runs as one, from their JSON events",
     MakeMergeReportsCommand},
    {kTest, "items", kPage, "list what can be selected on a page; --png FILE: draw it", MakeItemsCommand},
    {kTest, "lint", kPage, "report what would make voice fail on a page", MakeLintCommand},
    {kTest, "phrases", kNone, "list the phrases; --explain TEXT: how a text is understood",
     MakePhrasesCommand},
};

std::string Usage() {
  std::string text = "Usage: corvis COMMAND [ARGUMENTS]\n";
  std::string heading;
  for (const CommandRow& row : kCommands) {
    if (heading != row.heading) text += "\n" + std::string(heading = row.heading) + "\n";
    text += HelpLine(row.name, row.summary);
  }
  return text +
         "\ncorvis COMMAND --help lists the options of a command. demo and run open a window if there is a\n"
         "display; --headless prevents that.\n";
}

std::string HelpOf(const CommandRow& row, const CLI::App& app) {
  const std::string operands = row.operands.usage;
  return "Usage: corvis " + std::string(row.name) + " [OPTIONS]" + (operands.empty() ? "" : " " + operands) +
         "\n\n" + app.get_description() + "\n" + DescribeOptions(app) + app.get_footer();
}

Result<int> Print(const std::string& text, int status) {
  const Status printed = WriteStandardOutput(text);
  return printed ? Result<int>(status) : Fail(printed.error());
}

Status CheckOperands(const CommandRow& row, const std::vector<std::string>& operands) {
  if (operands.size() < row.operands.least) {
    return Fail("Expected " + std::string(row.operands.expected) + ".", ErrorKind::kUsage);
  }
  if (operands.size() <= row.operands.most) return {};
  return Fail("Unexpected \"" + operands[row.operands.most] + "\".", ErrorKind::kUsage);
}

// A command with its options. Each parses arguments once.
struct Declared {
  explicit Declared(const CommandRow& row) : command(row.make()) {
    app.set_help_flag();
    command->Declare(app);
    BeginGroup(app, "Other");
    if (HasConfiguration(row))
      AddText(app, "--config", "FILE", "options of the project (default: corvis.json, if there is one)",
              configuration);
    app.set_help_flag("-h,--help", "print this help")->group("Other");
  }

  CLI::App app;
  std::unique_ptr<Subcommand> command;
  std::string configuration;
};

Result<int> WrongUsage(const CommandRow& row, const Error& error) {
  return Fail(error.message + " See corvis " + row.name + " --help.", ErrorKind::kUsage);
}

// The operands, after the application of --url.
std::vector<std::string> OperandsOf(const CLI::App& app, const Arguments& parsed) {
  std::vector<std::string> operands = parsed.operands;
  const CLI::Option* url = app.get_option_no_throw("--url");
  if (url != nullptr && url->count() > 0) operands.insert(operands.begin(), url->results().back());
  return operands;
}

Result<int> Execute(const CommandRow& row, Supervisor& supervisor, Declared& declared,
                    const std::vector<std::string>& operands) {
  const Status checked = CheckOperands(row, operands);
  return checked ? declared.command->Execute(supervisor, operands) : WrongUsage(row, checked.error());
}

Result<int> ExecuteConfigured(const CommandRow& row, Supervisor& supervisor, const std::string& file,
                              const std::vector<std::string>& given) {
  const auto configuration = Configuration::Read(file, CommandsWithConfiguration());
  if (!configuration) {
    PrintLine(configuration.error().message);
    return kExitUsage;
  }
  Declared declared(row);
  std::vector<std::string> arguments = configuration->ArgumentsFor(row.name, declared.app, given);
  arguments.insert(arguments.end(), given.begin(), given.end());
  const auto parsed = ParseArguments(declared.app, std::move(arguments));
  if (!parsed) return WrongUsage(row, parsed.error());
  return Execute(
      row, supervisor, declared,
      configuration->Operands(OperandsOf(declared.app, *parsed), &row.operands == &kPageAndScripts));
}

Result<int> Execute(const CommandRow& row, Supervisor& supervisor,
                    const std::vector<std::string>& arguments) {
  Declared declared(row);
  const auto parsed = ParseArguments(declared.app, arguments);
  if (!parsed) return WrongUsage(row, parsed.error());
  if (parsed->is_help) return Print(HelpOf(row, declared.app), kExitOk);
  const std::string file = HasConfiguration(row) ? ConfigurationFileOf(arguments) : "";
  if (!file.empty()) return ExecuteConfigured(row, supervisor, file, arguments);
  return Execute(row, supervisor, declared, OperandsOf(declared.app, *parsed));
}

}  // namespace

ConfiguredCommands CommandsWithConfiguration() {
  ConfiguredCommands commands;
  for (const CommandRow& row : kCommands) {
    if (!HasConfiguration(row)) continue;
    commands[row.name] = [command = std::shared_ptr<Subcommand>(row.make())](CLI::App& app) {
      command->Declare(app);
    };
  }
  return commands;
}

Result<int> RunTool(Supervisor& supervisor, const std::vector<std::string>& arguments) {
  if (arguments.empty()) return Print(Usage(), kExitUsage);
  const std::string& name = arguments[0];
  if (name == "help" || name == "-h" || name == "--help") return Print(Usage(), kExitOk);
  if (name == "--version") return Print("corvis " CORVIS_VERSION "\n", kExitOk);
  const auto* const row = std::find_if(std::begin(kCommands), std::end(kCommands),
                                       [&name](const CommandRow& command) { return command.name == name; });
  if (row != std::end(kCommands)) return Execute(*row, supervisor, {arguments.begin() + 1, arguments.end()});
  std::vector<std::string> names;
  for (const CommandRow& command : kCommands) names.emplace_back(command.name);
  const std::string kind = name.compare(0, 1, "-") == 0 ? "option " : "command ";
  return Fail("Unknown " + kind + (name.empty() ? "\"\"" : name) + "." + DidYouMean(name, names) +
                  " See corvis --help.",
              ErrorKind::kUsage);
}

}  // namespace corvis::kit
