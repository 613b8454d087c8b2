// corvis.json: the options of a project, under the names that they have on the command line.
#ifndef CORVIS_KIT_CLI_CONFIGURATION_H_
#define CORVIS_KIT_CLI_CONFIGURATION_H_

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "base/result.h"
#include "cli/command_line.h"

namespace corvis::kit {

// The file in the present folder that is read unless --config names another.
constexpr const char* kConfigurationFile = "corvis.json";

// The commands that a configuration applies to, by name, and the declaration of their options.
using ConfiguredCommands = std::map<std::string, std::function<void(CLI::App&)>>;

class Configuration {
 public:
  // Reads a file. On mistakes fails with one line for each, with its place: "corvis.json:3:5: Unknown key …".
  // Paths are relative to the file's folder.
  static Result<Configuration> Read(const std::string& file, const ConfiguredCommands& commands);

  // The arguments that come in front of the given ones, so that those win. `app` declares the options of the
  // command. A list that is given replaces the file's.
  std::vector<std::string> ArgumentsFor(const std::string& command, const CLI::App& app,
                                        const std::vector<std::string>& given) const;

  // The operands, completed with the file's application and scripts.
  std::vector<std::string> Operands(std::vector<std::string> given, bool has_scripts) const;

 private:
  friend class ConfigurationReader;
  struct Setting {
    // The command whose section it is in; empty for all commands that have the option.
    std::string command;
    std::string key;
    // "--size=1280x720"
    std::vector<std::string> arguments;
  };
  std::string application_;
  std::vector<std::string> scripts_;
  std::vector<Setting> settings_;
};

// The file that the arguments name with --config, or kConfigurationFile if there is one, or "".
std::string ConfigurationFileOf(const std::vector<std::string>& arguments);

// The JSON schema of the file, made of the declared options.
std::string ConfigurationSchema(const ConfiguredCommands& commands);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_CLI_CONFIGURATION_H_
