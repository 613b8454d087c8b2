// The commands of the tool. A new one is a file that implements Subcommand, and a line in the table of
// commands.cc.
#ifndef CORVIS_KIT_CLI_COMMANDS_H_
#define CORVIS_KIT_CLI_COMMANDS_H_

#include <CLI/CLI.hpp>
#include <memory>
#include <string>
#include <vector>

#include "app/supervisor.h"
#include "base/result.h"
#include "cli/exit_status.h"

namespace corvis::kit {

class Subcommand {
 public:
  Subcommand() = default;
  virtual ~Subcommand() = default;
  Subcommand(const Subcommand&) = delete;
  Subcommand& operator=(const Subcommand&) = delete;

  // Declares its options, and describes it for its help.
  virtual void Declare(CLI::App& app) = 0;
  // Does it, with as many operands as it takes. Gives the exit status.
  virtual Result<int> Execute(Supervisor& supervisor, const std::vector<std::string>& operands) = 0;
};

std::unique_ptr<Subcommand> MakeDemoCommand();
std::unique_ptr<Subcommand> MakeRunCommand();
std::unique_ptr<Subcommand> MakeTestAppCommand();
std::unique_ptr<Subcommand> MakeItemsCommand();
std::unique_ptr<Subcommand> MakeLintCommand();

// Does what the arguments, without the program's name, ask for. Gives the exit status.
Result<int> RunTool(Supervisor& supervisor, const std::vector<std::string>& arguments);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_CLI_COMMANDS_H_
