// The statements of the language, by a table.
#include "script/script_reader.h"

#include <algorithm>
#include <cctype>

#include "language/phrases.h"
#include "language/raw_command.h"
#include "language/suggestions.h"
#include "script/line_reader.h"

namespace corvis::kit {

namespace {

void ReadMatcher(LineReader& line, Step& step) {
  step.has_matcher = true;
  Matcher& matcher = step.matcher;
  if (line.TakeWord("contains")) {
    matcher = {MatchKind::kContains, {line.Text()}};
  } else if (line.TakeWord("matches")) {
    if (line.Peek() != '/') return line.Fail("Here stands a regular expression between slashes.");
    matcher = {MatchKind::kMatches, {line.Between('/')}};
  } else if (line.TakeWord("json")) {
    matcher = {MatchKind::kJson, {line.Rest("a JSON text")}};
  } else if (line.TakeWord("one")) {
    line.OneOf({"of"});
    matcher = {MatchKind::kOneOf, {}};
    while (!line.is_at_end()) matcher.texts.push_back(line.Text(/*may_be_bare=*/true));
    if (matcher.texts.empty()) line.Fail("Here stand the texts that are allowed.");
  } else {
    // Before a text in quotation marks a word can only be meant as another way to compare.
    const LineReader before = line;
    const std::string word = line.Word();
    if (word != "is") line = before;
    if (!word.empty() && std::isalpha(static_cast<unsigned char>(word[0])) != 0 && word != "is" &&
        line.HasTextAfterWord()) {
      return line.Fail("There is no comparison \"" + word +
                       "\"; there are is, contains, matches, json and one of." +
                       DidYouMean(word, {"is", "contains", "matches", "json", "one"}));
    }
    matcher = {MatchKind::kExact, {line.Text(/*may_be_bare=*/true)}};
  }
  if (line.has_failed()) return;
  const std::string problem = MatcherProblem(matcher);
  if (!problem.empty()) line.Fail(problem);
}

void ReadName(LineReader& line, Step& step) {
  step.text = line.Text();
}
void ReadRest(LineReader& line, Step& step) {
  step.text = line.Rest("a text");
}
void ReadDuration(LineReader& line, Step& step) {
  step.duration = line.Duration();
}

void ReadPause(LineReader& line, Step& step) {
  constexpr auto kLongestPause = std::chrono::minutes(1);
  const LineReader before = line;
  step.duration = line.Duration();
  if (line.has_failed() || step.duration <= kLongestPause) return;
  line = before;
  line.Fail("A minute is the longest pause.");
}

// A phrase may stand in quotation marks, or bare to the end of the line.
void ReadPhrase(LineReader& line, Step& step) {
  const LineReader before = line;
  step.text = line.Peek() == '"' ? line.Text() : line.Rest("what is said");
  if (line.has_failed() || CommandOf(step.text) || TitleToSelect(step.text)) return;
  const std::string similar = SimilarPhrase(step.text);
  line = before;
  line.Fail("Nothing is known for \"" + step.text + "\"." +
            (similar.empty() ? "" : " Did you mean \"" + similar + "\"?"));
}

// Fails unless there is such an action.
void CheckAction(LineReader& line, const LineReader& at, const std::string& action) {
  if (line.has_failed() || FindAction(action) != nullptr) return;
  line = at;
  line.Fail(action.empty() ? "Here stands an action, such as ACTION_PLAY."
                           : "There is no action " + action + "." + DidYouMeanAction(action));
}

void ReadSend(LineReader& line, Step& step) {
  const LineReader before = line;
  step.text = line.is_at_end() ? "" : line.Rest("an action");
  const auto command = ParseRawCommand(step.text);
  if (command) return CheckAction(line, before, command->action);
  line = before;
  line.Word();
  line.Fail(command.error().message);
}

// What is expected of the application afterwards: nothing said, it listens again.
void ReadArrival(LineReader& line, Step& step) {
  if (line.is_at_end()) return;
  line.OneOf({"without"});
  line.OneOf({"listening"});
  step.is_listening = false;
  constexpr auto kQuiet = std::chrono::milliseconds(500);
  step.duration = line.TakeWord("for") ? line.Duration() : kQuiet;
}

void ReadOpen(LineReader& line, Step& step) {
  step.text = line.Text();
  ReadArrival(line, step);
}

void ReadInject(LineReader& line, Step& step) {
  if (line.TakeWord("after")) step.duration = line.Duration();
  if (line.is_at_end()) return line.Fail("Here stands key=\"value\".");
  step.entries = line.Pairs();
}

void ReadExpect(LineReader& line, Step& step) {
  if (line.TakeWord("no")) {
    line.OneOf({"answer"});
    step.kind = StepKind::kNoAnswer;
    if (line.TakeWord("within")) step.duration = line.Duration();
  } else if (line.TakeWord("action")) {
    step.kind = StepKind::kAction;
    const LineReader before = line;
    step.text = line.Word();
    CheckAction(line, before, step.text);
    if (!line.is_at_end()) {
      line.OneOf({"with"});
      ReadMatcher(line, step);
    }
  } else {
    ReadMatcher(line, step);
  }
}

void ReadSubjectAndMatcher(LineReader& line, Step& step) {
  step.text = line.Text();
  if (!line.has_failed() && line.is_at_end())
    return line.Fail("Here stands what it should be, such as is \"Play\".");
  ReadMatcher(line, step);
}

void ReadItems(LineReader& line, Step& step) {
  if (line.TakeWord("count")) {
    step.kind = StepKind::kItemCount;
    step.is_at_least = line.OneOf({"is", "at"}) == "at";
    if (step.is_at_least) line.OneOf({"least"});
    step.number = line.Number();
    return;
  }
  line.OneOf({"changed"});
  step.kind = StepKind::kItemChange;
  step.text = line.OneOf({"none", "moved", "appeared", "vanished"});
  if (step.text != "none") step.number = line.Number();
}

void ReadItem(LineReader& line, Step& step) {
  if (line.Peek() == '"') {
    step.kind = StepKind::kItemNumber;
    step.text = line.Text();
    line.OneOf({"is"});
    step.number = line.Number();
    return;
  }
  step.number = line.Number();
  for (const char* state : {"focused", "visible", "hidden"}) {
    if (!line.TakeWord(state)) continue;
    step.kind = StepKind::kItemState;
    step.text = state;
    return;
  }
  step.kind = StepKind::kItemTitle;
  ReadMatcher(line, step);
}

void ReadRestart(LineReader& line, Step& step) {
  line.TakeWord("service");
  ReadArrival(line, step);
}

void ReadPrivileges(LineReader& line, Step& step) {
  if (line.is_at_end()) return line.Fail("Here stands none, or microphone, voicecontrol or URIs.");
  if (line.TakeWord("none")) return;
  while (!line.is_at_end()) {
    const LineReader before = line;
    const std::string word = line.Word();
    step.words.push_back(word);
    if (word.find("://") != std::string::npos) continue;
    line = before;
    line.OneOf({"microphone", "voicecontrol"});
  }
}

struct Statement {
  const char* word;
  StepKind kind;
  void (*read)(LineReader& line, Step& step);
};

constexpr Statement kStatements[] = {
    {"test", StepKind::kTest, ReadName},
    {"note", StepKind::kNote, ReadRest},
    {"say", StepKind::kSay, ReadPhrase},
    {"send", StepKind::kSend, ReadSend},
    {"inject", StepKind::kInject, ReadInject},
    {"expect", StepKind::kExpect, ReadExpect},
    {"within", StepKind::kWithin, ReadDuration},
    {"show", StepKind::kShow, ReadSubjectAndMatcher},
    {"value", StepKind::kValue, ReadSubjectAndMatcher},
    {"items", StepKind::kItemCount, ReadItems},
    {"item", StepKind::kItemTitle, ReadItem},
    {"reload", StepKind::kReload, ReadArrival},
    {"open", StepKind::kOpen, ReadOpen},
    {"restart", StepKind::kRestart, ReadRestart},
    {"privileges", StepKind::kPrivileges, ReadPrivileges},
    {"timeout", StepKind::kTimeout, ReadDuration},
    {"wait", StepKind::kWait, ReadPause},
};

const Statement* FindStatement(const std::string& word, std::string& problem) {
  std::vector<std::string> words;
  for (const Statement& statement : kStatements) {
    if (word == statement.word) return &statement;
    words.emplace_back(statement.word);
  }
  problem = "There is no statement \"" + word + "\"." + DidYouMean(word, words);
  return nullptr;
}

// Whether a step checks the answer of what was said before it in the same test.
bool NeedsAnswer(StepKind kind) {
  return kind == StepKind::kExpect || kind == StepKind::kNoAnswer || kind == StepKind::kAction ||
         kind == StepKind::kWithin;
}

class Parser {
 public:
  explicit Parser(VoiceScript& script) : script_(script) {}

  void ReadLine(std::string_view text, int number) {
    LineReader line(text);
    if (line.is_at_end() || line.Peek() == '#') return;
    Step step;
    step.place = {number, static_cast<int>(text.find_first_not_of(" \t")) + 1};
    step.source = text.substr(static_cast<size_t>(step.place.column) - 1);
    std::string problem;
    const Statement* statement = FindStatement(line.Word(), problem);
    if (statement == nullptr) return AddError(step.place, problem);
    step.kind = statement->kind;
    statement->read(line, step);
    line.End();
    if (line.has_failed()) return AddError({number, line.problem_column()}, line.problem());
    Add(std::move(step));
  }

 private:
  void Add(Step step) {
    if (step.kind == StepKind::kTest) has_command_ = false;
    if (step.kind == StepKind::kSay || step.kind == StepKind::kSend ||
        (step.kind == StepKind::kInject && step.duration.count() == 0)) {
      has_command_ = true;
    }
    if (NeedsAnswer(step.kind) && !has_command_) {
      return AddError(step.place, "Nothing has been said yet; a say, send or inject stands before this.");
    }
    script_.steps.push_back(std::move(step));
  }

  void AddError(Place place, const std::string& sentence) { script_.errors.push_back({place, sentence}); }

  VoiceScript& script_;
  bool has_command_ = false;
};

}  // namespace

const char* NameOf(StepKind kind) {
  switch (kind) {
    case StepKind::kNoAnswer:
    case StepKind::kAction:
      return "expect";
    case StepKind::kItemChange:
      return "items";
    case StepKind::kItemNumber:
    case StepKind::kItemState:
      return "item";
    default:
      break;
  }
  const auto* found = std::find_if(std::begin(kStatements), std::end(kStatements),
                                   [kind](const Statement& statement) { return statement.kind == kind; });
  return found->word;
}

VoiceScript ParseVoiceScript(std::string_view text, const std::string& file) {
  VoiceScript script;
  script.file = file;
  Parser parser(script);
  for (int number = 1; !text.empty(); ++number) {
    const size_t end = text.find('\n');
    std::string_view line = text.substr(0, end);
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    parser.ReadLine(line, number);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  }
  return script;
}

std::string Located(const std::string& file, const Place& place, const std::string& sentence) {
  return file + ":" + std::to_string(place.line) + ":" + std::to_string(place.column) + ": " + sentence;
}

}  // namespace corvis::kit
