// Finds and reads the voice scripts that a command names, and chooses the tests to run.
#ifndef CORVIS_KIT_CLI_SCRIPT_SELECTION_H_
#define CORVIS_KIT_CLI_SCRIPT_SELECTION_H_

#include <functional>
#include <string>
#include <vector>

#include "app/spoken_language.h"
#include "base/result.h"
#include "cli/command_line.h"
#include "script/script.h"

namespace corvis::kit {

struct SelectionOptions {
  // A regular expression for the names of tests; empty for all.
  std::string name_pattern;
  // The part of the scripts to run, from 1 to `shards`.
  int shard = 1;
  int shards = 1;
  // How often to run the chosen scripts.
  long repetitions = 1;
};

// Declares the options.
void AddSelectionOptions(CLI::App& app, SelectionOptions& options);

struct SelectedScript {
  // Contains only the chosen tests. The steps before the first test are chosen with any other test, because
  // they prepare it.
  VoiceScript script;
  std::string text;
};

// Whether a test takes part, besides the options.
using TestFilter = std::function<bool(const VoiceScript& script, const ScriptTest& test)>;

// Reads the scripts of the operands: a file, a folder (all *.voice files in it, by name), or FILE:LINE for
// the test at a line. Prints the mistakes of scripts, which make an error with an empty message. Fails with
// kUsage if nothing is chosen; only a shard may be empty.
Result<std::vector<SelectedScript>> SelectScripts(const std::vector<std::string>& operands,
                                                  const SpokenLanguage& language,
                                                  const SelectionOptions& options, const TestFilter& filter);

// The place and name of each chosen test, one a line.
std::string ListOf(const std::vector<SelectedScript>& scripts);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_CLI_SCRIPT_SELECTION_H_
