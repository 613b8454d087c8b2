// Tests, notes, and the statements that act on the application: reload, open, restart, privileges, and so on.
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "script/session.h"
#include "script/statements.h"

namespace corvis::kit {

namespace {

using std::chrono::milliseconds;

// [without listening [for TIME]]. By default the application must listen again.
Arrival ReadArrival(LineReader& line) {
  constexpr auto kQuiet = milliseconds(500);
  if (line.is_at_end()) return {};
  line.OneOf({"without"});
  line.OneOf({"listening"});
  return {false, line.TakeWord("for") ? line.Duration() : kQuiet};
}

// The language applies to the lines that are parsed afterwards, so these statements have no effect at run
// time.
void FinishLanguage(LineReader& line, const LineReader& at, const Status& changed, Step& step) {
  step.role = StepRole::kLooks;
  step.run = [](Session& /*session*/) -> Verdict { return {}; };
  if (changed) return;
  line = at;
  line.Fail(changed.error().message);
}

}  // namespace

// test "NAME"
void ReadTest(LineReader& line, Step& step) {
  step.role = StepRole::kTest;
  step.text = line.Text();
}

// note TEXT
void ReadNote(LineReader& line, Step& step) {
  step.role = StepRole::kNote;
  step.text = line.Rest("a text");
}

// reload [without listening [for TIME]]
void ReadReload(LineReader& line, Step& step) {
  step.run = [arrival = ReadArrival(line)](Session& session) -> Verdict {
    return session.conversation.Reload(arrival);
  };
}

// open "URL" [without listening [for TIME]]
void ReadOpen(LineReader& line, Step& step) {
  const std::string url = line.Text();
  step.run = [url, arrival = ReadArrival(line)](Session& session) -> Verdict {
    return session.conversation.Open(url, arrival);
  };
}

// restart [service] [without listening [for TIME]]
void ReadRestart(LineReader& line, Step& step) {
  line.TakeWord("service");
  step.run = [arrival = ReadArrival(line)](Session& session) -> Verdict {
    return session.conversation.Restart(arrival);
  };
}

// privileges none, privileges NAME...
void ReadPrivileges(LineReader& line, Step& step) {
  std::vector<std::string> uris;
  if (line.is_at_end()) line.Fail("Expected none, microphone, voicecontrol or URIs.");
  const bool is_none = line.TakeWord("none");
  while (!is_none && !line.is_at_end()) {
    const LineReader before = line;
    const std::string word = line.Word();
    uris.push_back(PrivilegeUri(word));
    if (word.find("://") != std::string::npos) continue;
    line = before;
    line.OneOf({"microphone", "voicecontrol"});
  }
  step.run = [uris](Session& session) -> Verdict { return session.conversation.SetPrivileges(uris); };
}

// language TAG
void ReadLanguage(LineReader& line, Step& step) {
  const LineReader before = line;
  const std::string tag = line.Word();
  FinishLanguage(line, before,
                 tag.empty() ? Fail("Expected a language, for example de.") : line.language().Speak(tag),
                 step);
}

// phrases "FILE"
void ReadPhrases(LineReader& line, Step& step) {
  const LineReader before = line;
  const std::string file = line.Text();
  if (line.has_failed()) return;
  const auto path = std::filesystem::path(step.place.file).parent_path() / file;
  FinishLanguage(line, before, line.language().AddFile(path.string()), step);
}

// timeout TIME
void ReadTimeout(LineReader& line, Step& step) {
  step.role = StepRole::kLooks;
  step.run = [limit = line.Duration()](Session& session) -> Verdict {
    session.conversation.set_timeout(limit);
    return {};
  };
}

// clear storage
void ReadClear(LineReader& line, Step& step) {
  line.OneOf({"storage"});
  step.run = [](Session& session) -> Verdict { return session.conversation.runtime().ClearStorage(); };
}

// wait TIME
void ReadWait(LineReader& line, Step& step) {
  constexpr auto kLongest = std::chrono::minutes(1);
  const LineReader before = line;
  const milliseconds time = line.Duration();
  step.run = [time](Session& /*session*/) -> Verdict {
    Session::Pause(time);
    return {};
  };
  if (line.has_failed() || time <= kLongest) return;
  line = before;
  line.Fail("Expected a pause of at most one minute.");
}

}  // namespace corvis::kit
