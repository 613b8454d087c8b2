// Converts the commands of `corvis run --json`, which are JSON objects, to steps. docs/driving-the-kit.md
// lists them.
#ifndef CORVIS_KIT_CLI_JSON_COMMANDS_H_
#define CORVIS_KIT_CLI_JSON_COMMANDS_H_

#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <string>

#include "base/result.h"
#include "script/script.h"

namespace corvis::kit {

struct JsonCommand {
  // True for "quit", which has no step.
  bool is_quit = false;
  Step step;
  // The results of the step, as members of its event. Filled while the step runs.
  std::shared_ptr<nlohmann::ordered_json> found;
};

// Parses a command. The error says what was expected.
Result<JsonCommand> ReadJsonCommand(const nlohmann::json& command);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_CLI_JSON_COMMANDS_H_
