// The statements that send something to the application and those that check its answer.
#include <fmt/format.h>

#include <string>
#include <utility>

#include "language/raw_command.h"
#include "language/suggestions.h"
#include "output/text_forms.h"
#include "script/matcher.h"
#include "script/session.h"
#include "script/statements.h"

namespace corvis::kit {

namespace {

using std::chrono::milliseconds;

Exchange ExchangeOf(const Turn& turn) {
  Exchange exchange;
  exchange.said = turn.said;
  if (!turn.is_sent) return exchange;
  exchange.action = turn.command.action;
  exchange.data = DescribeData(turn.command);
  exchange.is_answered = turn.answer.has_value();
  if (!exchange.is_answered) return exchange;
  exchange.answer = turn.answer->data;
  exchange.answer_time = std::chrono::duration_cast<std::chrono::microseconds>(turn.answer->took);
  exchange.pieces = turn.answer->pieces;
  return exchange;
}

bool IsSilenceExpected(const Session& session) {
  return session.next != nullptr && session.next->silence;
}

// The time limit for an answer. If the next step is "expect no answer within TIME", that time applies.
milliseconds AnswerLimit(const Session& session) {
  const milliseconds silence = IsSilenceExpected(session) ? *session.next->silence : milliseconds(0);
  return silence.count() > 0 ? silence : session.conversation.timeout();
}

Verdict Report(Session& session, const Turn& turn) {
  session.exchange = ExchangeOf(turn);
  if (turn.answer || IsSilenceExpected(session)) return {};
  return Failed(turn.answer.error().message);
}

// Reports an error at `at` if `action` does not exist.
void CheckAction(LineReader& line, const LineReader& at, const std::string& action) {
  if (line.has_failed() || FindAction(action) != nullptr) return;
  line = at;
  line.Fail(action.empty() ? "Expected an action, for example ACTION_PLAY."
                           : "Unknown action " + action + "." + DidYouMeanAction(action));
}

// Makes a step that checks the latest answer.
template <typename Check>
void CheckAnswer(Step& step, Check check) {
  step.role = StepRole::kChecksAnswer;
  step.run = [check = std::move(check)](Session& session) -> Verdict {
    const Result<Answer>& answer = session.dialogue.Answered(session.conversation.timeout()).answer;
    return answer ? check(*answer) : Failed(answer.error().message);
  };
}

// no answer [within TIME]
void ReadNoAnswer(LineReader& line, Step& step) {
  line.OneOf({"answer"});
  const milliseconds within = line.TakeWord("within") ? line.Duration() : milliseconds(0);
  step.role = StepRole::kChecksAnswer;
  step.silence = within;
  step.run = [within](Session& session) {
    const milliseconds limit = within.count() > 0 ? within : session.conversation.timeout();
    const Result<Answer>& answer = session.dialogue.Answered(limit).answer;
    return Compared(!answer, "no answer", answer ? Quoted(answer->data) : "");
  };
}

// closed
void ReadExpectClosed(Step& step) {
  step.role = StepRole::kLooks;
  step.expects_closed = true;
  step.run = [](Session& session) -> Verdict {
    Session::Pause(session.conversation.timeout());
    if (HasApplicationClosed()) return {};
    return Failed(
        fmt::format("The application has not ended within {} ms.", session.conversation.timeout().count()));
  };
}

// action ACTION_NAME [with MATCHER]
void ReadExpectAction(LineReader& line, Step& step) {
  const LineReader before = line;
  const std::string action = line.Word();
  CheckAction(line, before, action);
  std::optional<Matcher> data;
  if (!line.is_at_end()) {
    line.OneOf({"with"});
    data = ReadMatcher(line);
  }
  step.role = StepRole::kChecksAnswer;
  step.run = [action, data](Session& session) {
    const Command& command = session.dialogue.turn().command;
    const Verdict verdict = Compared(command.action == action, action, command.action);
    return verdict && data ? Compared(*data, DescribeData(command)) : verdict;
  };
}

}  // namespace

// say PHRASE: quoted, or unquoted up to the end of the line.
void ReadSay(LineReader& line, Step& step) {
  const LineReader before = line;
  const std::string phrase = line.Peek() == '"' ? line.Text() : line.Rest("a phrase");
  SetPhrase(step, phrase);
  step.run = [say = std::move(step.run), phrases = line.language().phrases()](Session& session) {
    session.conversation.set_phrases(phrases);
    return say(session);
  };
  // A text that is similar to no phrase may be the title of an item on the screen.
  const Phrasebook& phrases = line.language().phrases();
  if (line.has_failed() || phrases.Understand(phrase) || phrases.Suggest(phrase).empty()) return;
  line = before;
  line.Fail(phrases.UnknownPhrase(phrase));
}

void SetPhrase(Step& step, std::string phrase) {
  step.role = StepRole::kSpeaks;
  step.run = [phrase = std::move(phrase)](Session& session) {
    session.KeepPace();
    return Report(session, session.dialogue.Say(phrase, AnswerLimit(session)));
  };
}

// send ACTION_NAME DATA
void ReadSend(LineReader& line, Step& step) {
  const LineReader before = line;
  const std::string text = line.is_at_end() ? "" : line.Rest("an action");
  const auto command = ParseRawCommand(text);
  if (!command) {
    line = before;
    line.Word();
    return line.Fail(command.error().message);
  }
  CheckAction(line, before, command->action);
  SetCommand(step, *command, text);
}

void SetCommand(Step& step, Command command, std::string said) {
  step.role = StepRole::kSpeaks;
  step.run = [command = std::move(command), said = std::move(said)](Session& session) {
    session.KeepPace();
    return Report(session, session.dialogue.Send(command, said, AnswerLimit(session)));
  };
}

// inject [after TIME] KEY=VALUE...
void ReadInject(LineReader& line, Step& step) {
  const bool is_later = line.TakeWord("after");
  const milliseconds delay = is_later ? line.Duration() : milliseconds(0);
  if (line.is_at_end()) line.Fail("Expected key=\"value\".");
  const Entries entries = line.Pairs();
  step.role = delay.count() > 0 ? StepRole::kActs : StepRole::kSpeaks;
  if (delay.count() > 0) {
    step.run = [entries, delay, place = step.place](Session& session) -> Verdict {
      session.dialogue.InjectLater(place, entries, delay);
      return {};
    };
  } else {
    step.run = [entries](Session& session) -> Verdict { return session.dialogue.Inject(entries); };
  }
}

// expect MATCHER, expect no answer, expect action, expect closed
void ReadExpect(LineReader& line, Step& step) {
  if (line.TakeWord("no")) return ReadNoAnswer(line, step);
  if (line.TakeWord("action")) return ReadExpectAction(line, step);
  if (line.TakeWord("closed")) return ReadExpectClosed(step);
  CheckAnswer(step,
              [matcher = ReadMatcher(line)](const Answer& answer) { return Compared(matcher, answer.data); });
}

// within TIME
void ReadWithin(LineReader& line, Step& step) {
  CheckAnswer(step, [limit = line.Duration()](const Answer& answer) {
    const std::chrono::duration<double, std::milli> took = answer.took;
    return Compared(answer.took <= limit, fmt::format("at most {} ms", limit.count()),
                    fmt::format("{:.1f} ms", took.count()));
  });
}

}  // namespace corvis::kit
