// The commands of the tool. To add one, implement Subcommand in a file of its own and add a line to the table
// in commands.cc.
#ifndef CORVIS_KIT_CLI_COMMANDS_H_
#define CORVIS_KIT_CLI_COMMANDS_H_

#include <memory>
#include <string>
#include <vector>

#include "app/supervisor.h"
#include "base/result.h"
#include "cli/command_line.h"
#include "cli/configuration.h"
#include "cli/exit_status.h"

namespace corvis::kit {

class Subcommand {
 public:
  Subcommand() = default;
  virtual ~Subcommand() = default;
  Subcommand(const Subcommand&) = delete;
  Subcommand& operator=(const Subcommand&) = delete;

  // Declares the options and the description for the help.
  virtual void Declare(CLI::App& app) = 0;
  // Runs the command and returns the exit status. The number of operands has been checked.
  virtual Result<int> Execute(Supervisor& supervisor, const std::vector<std::string>& operands) = 0;
};

std::unique_ptr<Subcommand> MakeDemoCommand();
std::unique_ptr<Subcommand> MakeRunCommand();
std::unique_ptr<Subcommand> MakeInitCommand();
std::unique_ptr<Subcommand> MakeTestAppCommand();
std::unique_ptr<Subcommand> MakeMergeReportsCommand();
std::unique_ptr<Subcommand> MakeItemsCommand();
std::unique_ptr<Subcommand> MakeLintCommand();
std::unique_ptr<Subcommand> MakePhrasesCommand();
std::unique_ptr<Subcommand> MakeDoctorCommand();

// The commands that read corvis.json.
ConfiguredCommands CommandsWithConfiguration();

// Runs the command that the arguments (without the program's name) name. Returns the exit status.
Result<int> RunTool(Supervisor& supervisor, const std::vector<std::string>& arguments);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_CLI_COMMANDS_H_
