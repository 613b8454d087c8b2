// The table of commands, their help, and the dispatch from arguments to a command.
#include "cli/commands.h"

#include <algorithm>
#include <iterator>

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
constexpr Operands kPageAndScripts = {"URL|FILE|FOLDER SCRIPT|FOLDER|SCRIPT:LINE...", 2,
                                      static_cast<size_t>(-1), "an application and a voice script"};

struct CommandRow {
  // The heading under which the help lists the command.
  const char* heading;
  const char* name;
  const Operands& operands;
  const char* summary;
  std::unique_ptr<Subcommand> (*make)();
};

constexpr const char* kTry = "Try an application";
constexpr const char* kTest = "Test an application";

const CommandRow kCommands[] = {
    {kTry, "demo", kNone, "run the example application and hold a short conversation with it",
     MakeDemoCommand},
    {kTry, "run", kPage, "run your own page, with a prompt for phrases", MakeRunCommand},
    {kTry, "doctor", kNone, "report what this machine can play and show, and what to install",
     MakeDoctorCommand},
    {kTest, "test-app", kPageAndScripts, "run voice scripts against an application", MakeTestAppCommand},
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

Result<int> Execute(const CommandRow& row, Supervisor& supervisor, std::vector<std::string> arguments) {
  CLI::App app;
  app.set_help_flag();
  const std::unique_ptr<Subcommand> command = row.make();
  command->Declare(app);
  app.set_help_flag("-h,--help", "print this help")->group("Other");
  const auto parsed = ParseArguments(app, std::move(arguments));
  if (parsed && parsed->is_help) {
    return Print(HelpOf(row, app), kExitOk);
  }
  const Status checked = parsed ? CheckOperands(row, parsed->operands) : Status(Fail(parsed.error()));
  if (!checked) {
    return Fail(checked.error().message + " See corvis " + row.name + " --help.", ErrorKind::kUsage);
  }
  return command->Execute(supervisor, parsed->operands);
}

}  // namespace

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
