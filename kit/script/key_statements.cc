// The remote control's keys, and what is typed.
#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "corvis_tv/remote_keys.h"
#include "language/suggestions.h"
#include "script/session.h"
#include "script/statements.h"

namespace corvis::kit {

namespace {

constexpr long kMostTimes = 1000;

std::vector<std::string> KeyNames() {
  std::vector<std::string> names;
  for (const tv::RemoteKey& key : tv::kRemoteKeys) names.emplace_back(key.name);
  return names;
}

std::string ReadKey(LineReader& line) {
  const LineReader before = line;
  if (line.is_at_end()) line.Fail("Expected a key, for example OK or \"5\".");
  std::string name = line.Text(/*may_be_bare=*/true);
  if (line.has_failed() || tv::FindRemoteKey(name) != nullptr) return name;
  line = before;
  line.Fail("Unknown key \"" + name + "\"." + DidYouMean(name, KeyNames()));
  return "";
}

// [N times]
long ReadTimes(LineReader& line) {
  if (line.is_at_end()) return 1;
  const LineReader before = line;
  const long times = line.Number();
  if (!line.TakeWord("time")) line.OneOf({"times"});
  if (line.has_failed() || times <= kMostTimes) return times;
  line = before;
  line.Fail("A key is pressed at most 1000 times.");
  return 0;
}

Status Press(RuntimeControl& runtime, const std::string& key, long times) {
  for (long time = 0; time < times; ++time) {
    if (const Status pressed = runtime.PressKey(key); !pressed) return pressed;
  }
  return {};
}

}  // namespace

// press KEY [N times]
void ReadPress(LineReader& line, Step& step) {
  const std::string key = ReadKey(line);
  step.run = [key, times = ReadTimes(line)](Session& session) -> Verdict {
    session.KeepPace();
    return Press(session.conversation.runtime(), key, times);
  };
}

// type "TEXT"
void ReadType(LineReader& line, Step& step) {
  step.run = [text = line.Text()](Session& session) -> Verdict {
    session.KeepPace();
    return session.conversation.runtime().TypeText(text);
  };
}

}  // namespace corvis::kit
