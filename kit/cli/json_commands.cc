// The table of JSON commands. Most of them run a statement of voice scripts.
#include "cli/json_commands.h"

#include <algorithm>
#include <iterator>
#include <nlohmann/json.hpp>
#include <utility>
#include <vector>

#include "language/raw_command.h"
#include "language/suggestions.h"
#include "output/output_file.h"
#include "output/text_forms.h"
#include "script/page_look.h"
#include "script/script_reader.h"
#include "script/session.h"
#include "script/statements.h"

namespace corvis::kit {

namespace {

using Found = std::shared_ptr<nlohmann::ordered_json>;

std::string TextOf(const nlohmann::json& value) {
  return value.is_string() ? value.get<std::string>()
                           : value.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

// Reads the members of a command. Keeps the first error; after it every read returns an empty value.
class Members {
 public:
  explicit Members(const nlohmann::json& command) : command_(command) {}

  // Null if there is none.
  const nlohmann::json* Find(const char* name) {
    known_.emplace_back(name);
    const auto found = command_.find(name);
    return found == command_.end() || found->is_null() ? nullptr : &*found;
  }
  std::string Text(const char* name) {
    const nlohmann::json* found = Find(name);
    if (found != nullptr && found->is_string()) return *found;
    Note("Expected a text as the member \"" + std::string(name) + "\".");
    return "";
  }
  std::string TextOr(const char* name, const char* fallback) {
    return Find(name) == nullptr ? fallback : Text(name);
  }
  bool FlagOr(const char* name, bool fallback) {
    const nlohmann::json* found = Find(name);
    if (found == nullptr) return fallback;
    if (!found->is_boolean()) Note("Expected true or false as the member \"" + std::string(name) + "\".");
    return found->is_boolean() && found->get<bool>();
  }
  // A non-negative whole number, as text.
  std::string NumberOr(const char* name, const char* fallback) {
    const nlohmann::json* found = Find(name);
    if (found == nullptr) return fallback;
    if (!found->is_number_unsigned()) Note("Expected a number as the member \"" + std::string(name) + "\".");
    return TextOf(*found);
  }

  void Note(const std::string& problem) {
    if (problem_.empty()) problem_ = problem;
  }
  // Fails with the first error. A member that was not read is an error.
  Status Check() {
    for (const auto& member : command_.items()) {
      if (std::find(known_.begin(), known_.end(), member.key()) == known_.end())
        Note("Unknown member \"" + member.key() + "\"." + DidYouMean(member.key(), known_));
    }
    return problem_.empty() ? Status() : Fail(problem_);
  }

 private:
  const nlohmann::json& command_;
  std::vector<std::string> known_ = {"id", "command"};
  std::string problem_;
};

// A step that is one statement of a voice script.
Result<Step> ReadStatement(const std::string& statement) {
  VoiceScript script = ParseVoiceScript(statement, "", SpokenLanguage());
  if (!script.errors.empty()) return Fail(script.errors[0].message);
  const bool is_one = script.tests.size() == 1 && script.tests[0].steps.size() == 1;
  if (!is_one || !script.tests[0].steps[0].run)
    return Fail("Expected one statement other than a test or note.");
  return std::move(script.tests[0].steps[0]);
}

Step MakeStep(StepRole role, std::string source, std::function<Verdict(Session&)> run) {
  Step step;
  step.role = role;
  step.source = std::move(source);
  step.run = std::move(run);
  return step;
}

// Adds the exception of the callback to the results of a step.
Step WithException(Step step, const Found& found) {
  step.run = [speak = std::move(step.run), found](Session& session) {
    Verdict verdict = speak(session);
    const std::string exception = session.dialogue.Exception();
    if (!exception.empty()) (*found)["exception"] = exception;
    return verdict;
  };
  return step;
}

Result<Step> ReadSay(Members& members, const Found& found) {
  const std::string phrase = members.Text("text");
  Step step;
  step.source = "say " + Quoted(phrase);
  SetPhrase(step, phrase);
  return WithException(std::move(step), found);
}

Result<Command> ReadCommand(Members& members) {
  const std::string action = members.Text("action");
  const nlohmann::json* data = members.Find("data");
  if (data == nullptr || !data->is_object())
    return ParseRawCommand(data == nullptr ? action : action + " " + TextOf(*data));
  Command command = {action, "", {}, true};
  for (const auto& member : data->items()) command.entries.push_back({member.key(), TextOf(member.value())});
  return command;
}

Result<Step> ReadSend(Members& members, const Found& found) {
  Result<Command> command = ReadCommand(members);
  if (!command) return Fail(command.error());
  const std::string problem = UnknownActionWarning(*command);
  if (!problem.empty()) return Fail(problem);
  Step step;
  step.source = command->action + " " + DescribeData(*command);
  SetCommand(step, std::move(*command), step.source);
  return WithException(std::move(step), found);
}

Result<Step> ReadPress(Members& members, const Found& /*found*/) {
  const std::string times = members.NumberOr("times", "1");
  return ReadStatement("press " + Quoted(members.Text("key")) + (times == "1" ? "" : " " + times + " times"));
}

Result<Step> ReadType(Members& members, const Found& /*found*/) {
  return ReadStatement("type " + Quoted(members.Text("text")));
}

// Waits until the matcher holds; without a matcher looks only once.
template <typename Look>
Result<Step> ReadLook(const std::string& source, const std::string& matcher, const Found& found, Look look) {
  if (!matcher.empty()) return ReadStatement(source + " " + matcher);
  return MakeStep(StepRole::kLooks, source, [found, look](Session& session) -> Verdict {
    Result<nlohmann::json> value = look(session.conversation);
    if (!value) return Failed(value.error().message);
    (*found)["value"] = *value;
    return {};
  });
}

Result<Step> ReadShow(Members& members, const Found& found) {
  const std::string selector = members.Text("selector");
  return ReadLook("show " + Quoted(selector), members.TextOr("matcher", ""), found,
                  [selector](Conversation& conversation) { return ShownText(conversation, selector); });
}

Result<Step> ReadValue(Members& members, const Found& found) {
  const std::string expression = members.Text("expression");
  return ReadLook("value " + Quoted(expression), members.TextOr("matcher", ""), found,
                  [expression](Conversation& conversation) { return ValueOf(conversation, expression); });
}

Result<Step> ReadItems(Members& members, const Found& found) {
  const std::string title = members.TextOr("title", "");
  return MakeStep(StepRole::kLooks, "items", [found, title](Session& session) -> Verdict {
    const Result<ItemList> list = session.conversation.AskItems();
    if (!list) return Failed(list.error().message);
    (*found)["answer"] = session.conversation.items_turn().answer->data;
    (*found)["numbers"] = nlohmann::json::array();
    for (const Item& item :
         title.empty() ? list->items : ItemsTitled(*list, title, session.conversation.phrases()))
      (*found)["numbers"].push_back(item.number);
    return {};
  });
}

Result<std::string> TakePicture(Conversation& conversation, bool has_items) {
  if (!has_items) return conversation.runtime().Screenshot();
  const Result<ItemList> list = conversation.AskItems();
  return list ? conversation.PictureOf(*list) : Fail(list.error());
}

Result<Step> ReadScreenshot(Members& members, const Found& found) {
  const std::string file = members.Text("file");
  const bool has_items = members.FlagOr("items", false);
  return MakeStep(StepRole::kLooks, "screenshot", [found, file, has_items](Session& session) -> Verdict {
    const Result<std::string> picture = TakePicture(session.conversation, has_items);
    if (!picture) return Failed(picture.error().message);
    const Status written = WriteOutputFile(file, *picture);
    if (written) (*found)["screenshot"] = file;
    return written;
  });
}

Result<Step> ReadOpen(Members& members, const Found& /*found*/) {
  return ReadStatement("open " + Quoted(members.Text("url")));
}

Result<Step> ReadReload(Members& /*members*/, const Found& /*found*/) {
  return ReadStatement("reload");
}

Result<Step> ReadRestart(Members& /*members*/, const Found& /*found*/) {
  return ReadStatement("restart");
}

Result<Step> ReadAnyStatement(Members& members, const Found& /*found*/) {
  return ReadStatement(members.Text("statement"));
}

struct JsonCommandRow {
  const char* name;
  Result<Step> (*read)(Members& members, const Found& found);
};
constexpr JsonCommandRow kJsonCommands[] = {
    {"say", ReadSay},     {"send", ReadSend},     {"press", ReadPress},     {"type", ReadType},
    {"items", ReadItems}, {"show", ReadShow},     {"value", ReadValue},     {"screenshot", ReadScreenshot},
    {"open", ReadOpen},   {"reload", ReadReload}, {"restart", ReadRestart}, {"do", ReadAnyStatement},
};
constexpr const char* kQuit = "quit";

Result<JsonCommand> Unknown(const std::string& name) {
  std::vector<std::string> names = {kQuit};
  for (const JsonCommandRow& row : kJsonCommands) names.emplace_back(row.name);
  return Fail("Unknown command \"" + name + "\"." + DidYouMean(name, names));
}

}  // namespace

Result<JsonCommand> ReadJsonCommand(const nlohmann::json& command) {
  if (!command.is_object())
    return Fail(R"(Expected a JSON object such as {"id": 1, "command": "say", "text": "pause"}.)");
  Members members(command);
  const std::string name = members.Text("command");
  JsonCommand read;
  read.found = std::make_shared<nlohmann::ordered_json>(nlohmann::ordered_json::object());
  read.is_quit = name == kQuit;
  const auto* const row = std::find_if(std::begin(kJsonCommands), std::end(kJsonCommands),
                                       [&name](const JsonCommandRow& known) { return known.name == name; });
  if (row == std::end(kJsonCommands) && !read.is_quit && members.Find("command") != nullptr)
    return Unknown(name);
  Result<Step> step = row == std::end(kJsonCommands) ? Step() : row->read(members, read.found);
  // Report an invalid member before any error that results from it.
  if (const Status checked = members.Check(); !checked) return Fail(checked.error());
  if (!step) return Fail(step.error());
  read.step = std::move(*step);
  read.step.statement = name;
  return read;
}

}  // namespace corvis::kit
