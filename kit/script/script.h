// A voice script that was read: tests, each a list of steps.
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

// What kind of statement a step is.
enum class StepRole {
  kTest,          // begins a test; nothing is done
  kNote,          // a line for the reports; nothing is done
  kSpeaks,        // sends the application something that may be answered
  kChecksAnswer,  // looks at what was sent last in the same test, and its answer
  kLooks,         // leaves the page as it is
  kActs,          // may change the page
};

struct Step {
  ScriptPlace place;
  // The statement's first word.
  std::string statement;
  // The line as it is in the script.
  std::string source;
  StepRole role = StepRole::kActs;
  // The name of a test, the text of a note.
  std::string text;
  // What any other step does.
  std::function<Verdict(Session& session)> run;
  // The step expects that what was sent is not answered within this time; zero for the time limit.
  std::optional<std::chrono::milliseconds> silence;
  // The step expects that the application ends, be it during the step in front of it.
  bool expects_closed = false;
};

struct ScriptTest {
  ScriptPlace place;
  // Nothing for what is in front of the script's first test statement.
  std::optional<std::string> name;
  // Notes and what is done.
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
