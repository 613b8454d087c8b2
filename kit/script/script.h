// A parsed voice script: a list of tests, each a list of steps.
#ifndef CORVIS_KIT_SCRIPT_SCRIPT_H_
#define CORVIS_KIT_SCRIPT_SCRIPT_H_

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "events/events.h"
#include "script/verdict.h"

namespace corvis::kit {

class Session;

// The kind of a step's statement.
enum class StepRole {
  kTest,          // starts a test; has no effect
  kNote,          // a line for the reports; has no effect
  kSpeaks,        // sends the application something that it may answer
  kChecksAnswer,  // checks the answer to the last command of the same test
  kLooks,         // does not change the page
  kActs,          // may change the page
};

struct Step {
  ScriptPlace place;
  // The statement's first word.
  std::string statement;
  // The line as written in the script.
  std::string source;
  StepRole role = StepRole::kActs;
  // The name of a test, the text of a note.
  std::string text;
  // The action of any other step.
  std::function<Verdict(Session& session)> run;
  // Set if the step expects no answer within this time; zero stands for the time limit.
  std::optional<std::chrono::milliseconds> silence;
  // The step expects the application to end, during this step or the previous one.
  bool expects_closed = false;
};

struct ScriptTest {
  ScriptPlace place;
  // Empty for the steps before the script's first test statement.
  std::optional<std::string> name;
  // All steps, including notes.
  std::vector<Step> steps;
};

struct ScriptError {
  ScriptPlace place;
  std::string message;
};

struct VoiceScript {
  std::string file;
  std::vector<ScriptTest> tests;
  std::vector<ScriptError> errors;
};

}  // namespace corvis::kit

#endif  // CORVIS_KIT_SCRIPT_SCRIPT_H_
