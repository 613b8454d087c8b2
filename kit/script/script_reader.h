// Voice scripts: what is said to an application and what is expected of it, line by line.
// docs/voice-scripts.md is the reference of the language.
#ifndef CORVIS_KIT_SCRIPT_SCRIPT_READER_H_
#define CORVIS_KIT_SCRIPT_SCRIPT_READER_H_

#include <chrono>
#include <string>
#include <string_view>
#include <vector>

#include "language/actions.h"
#include "script/matcher.h"

namespace corvis::kit {

enum class StepKind {
  kTest,        // text: the name of what follows
  kNote,        // text
  kSay,         // text: the phrase
  kSend,        // text: the raw command
  kInject,      // entries, after `duration`
  kExpect,      // matcher: of the answer
  kNoAnswer,    // nothing comes within `duration`
  kAction,      // text: the action that the phrase became; matcher, when given: of its data
  kWithin,      // duration: the answer's latency at most
  kShow,        // text: a selector; matcher: of its text
  kValue,       // text: an expression; matcher: of its value
  kItemCount,   // number, is_at_least
  kItemTitle,   // number; matcher: of the title
  kItemNumber,  // text: the title; number
  kItemState,   // number; text: focused, visible or hidden
  kItemChange,  // text: none, or moved, appeared, vanished with `number`
  kReload,      // is_listening, or not for `duration`; so for the next two
  kOpen,        // text: a URL, relative to the page
  kRestart,
  kPrivileges,  // words: names or URIs
  kTimeout,     // duration: for each step that follows
  kWait,        // duration: nothing is done for so long
};

// Whether such a step does nothing by itself.
inline bool IsHeading(StepKind kind) {
  return kind == StepKind::kTest || kind == StepKind::kNote;
}
// The statement's word.
const char* NameOf(StepKind kind);

// Where something stands in a script, counted from 1. Columns count bytes.
struct Place {
  int line = 1;
  int column = 1;
};

struct Step {
  StepKind kind = StepKind::kNote;
  Place place;
  // The line as it stands in the script.
  std::string source;
  std::string text;
  Matcher matcher;
  bool has_matcher = false;
  long number = 0;
  bool is_at_least = false;
  bool is_listening = true;
  std::chrono::milliseconds duration{0};
  Entries entries;
  std::vector<std::string> words;
};

struct ScriptError {
  Place place;
  std::string sentence;
};

struct VoiceScript {
  std::string file;
  std::vector<Step> steps;
  std::vector<ScriptError> errors;
};

// Reads a script. Lines that are wrong end up in `errors`, all others in `steps`. Takes any bytes; never
// throws.
VoiceScript ParseVoiceScript(std::string_view text, const std::string& file);

// "file:line:column: sentence".
std::string Located(const std::string& file, const Place& place, const std::string& sentence);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_SCRIPT_SCRIPT_READER_H_
