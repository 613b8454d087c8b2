// The commands of the prompt, dispatched by a table.
#include "cli/prompt.h"

#include <algorithm>
#include <chrono>
#include <sstream>
#include <utility>

#include "language/raw_command.h"
#include "output/output_file.h"
#include "output/text_forms.h"
#include "script/script_reader.h"
#include "script/session.h"

namespace corvis::kit {

namespace {

// One line of the prompt's two-column lists.
std::string Row(const std::string& left, const std::string& right) {
  constexpr size_t kWidth = 40;
  return "  " + left + std::string(left.size() < kWidth ? kWidth - left.size() : 1, ' ') + "  " + right +
         "\n";
}

std::string DescribeAnswer(const Command& command, const Answer& answer) {
  char time[64];
  std::snprintf(time, sizeof(time), "   (%.1f ms)",
                std::chrono::duration<double, std::milli>(answer.took).count());
  const std::string data = DescribeData(command);
  std::string text =
      command.action + (data.empty() ? "" : " " + data) + "  ->  " + ForTerminal(answer.data) + time;
  if (answer.pieces > 1) {
    text +=
        ", " + std::to_string(answer.data.size()) + " bytes in " + std::to_string(answer.pieces) + " pieces";
  }
  return answer.word == "appContext" ? text + ", as the application's state" : text;
}

struct ItemsArguments {
  bool is_diff = false;
  std::string png_file;
};

Result<ItemsArguments> ReadItemsArguments(const std::string& argument) {
  ItemsArguments arguments;
  std::istringstream words(argument);
  for (std::string word; words >> word;) {
    if (word == "--diff") {
      arguments.is_diff = true;
    } else if (word != "--png" || !(words >> arguments.png_file)) {
      return Fail("Expected --diff or --png FILE after items, not " + word + ".");
    }
  }
  return arguments;
}

}  // namespace

const std::vector<Prompt::CommandRow>& Prompt::Commands() {
  static const std::vector<CommandRow> kCommands = {
      {"help", "help", "prints this list", &Prompt::Help},
      {"items", "items [--diff] [--png FILE]",
       "lists what can be selected; --diff: changes since the last time; --png: saves a screenshot",
       &Prompt::Items},
      {"commands", "commands", "lists the actions that the page registered, with a phrase for each",
       &Prompt::ListActions},
      {"press", "press KEY [N times]", "presses a key of the remote control: Left, OK, Back, Play, \"5\", …",
       &Prompt::Press},
      {"type", "type \"TEXT\"", "types into the focused field", &Prompt::Type},
      {"say", "say PHRASE", "says the phrase, as does PHRASE alone", &Prompt::SayPhrase},
      {"apps", "apps", "lists the registered applications", &Prompt::Apps},
      {"record", "record FILE, record stop", "records the conversation as a voice script for replay",
       &Prompt::Record},
      {"restart", "restart", "simulates a restart of the voice service", &Prompt::Restart},
      {"reload", "reload", "reloads the page", &Prompt::Reload},
      {"quit", "quit", "ends the run (so does Ctrl-D)", &Prompt::Quit},
  };
  return kCommands;
}

std::vector<std::string> Prompt::CompletionWords(const Phrasebook& phrases) {
  std::vector<std::string> words;
  for (const CommandRow& row : Commands()) words.emplace_back(row.name);
  for (const std::string& sample : phrases.Samples()) words.push_back(sample);
  for (const ActionInfo& action : Actions()) words.emplace_back(action.name);
  return words;
}

void Prompt::Run() {
  while (!is_over_) {
    const std::optional<std::string> line = lines_.Next();
    if (!line) return;
    Handle(*line);
  }
}

void Prompt::Handle(const std::string& line) {
  const size_t begin = line.find_first_not_of(" \t");
  if (begin == std::string::npos || line[begin] == '#') return;
  const std::string text = line.substr(begin);
  const size_t space = text.find(' ');
  const std::string word = text.substr(0, space);
  const auto row = std::find_if(Commands().begin(), Commands().end(),
                                [&word](const CommandRow& command) { return word == command.name; });
  if (row != Commands().end())
    return (this->*row->run)(space == std::string::npos ? "" : text.substr(space + 1));
  return IsRawCommand(text) ? SendRaw(text) : SayPhrase(text);
}

void Prompt::SendRaw(const std::string& text) {
  const Result<Command> command = ParseRawCommand(text);
  if (!command) return lines_.Show(command.error().message);
  const std::string warning = UnknownActionWarning(*command);
  if (!warning.empty()) lines_.Show(warning);
  ShowTurn(conversation_.Send(*command, text));
}

void Prompt::SayPhrase(const std::string& argument) {
  const bool is_quoted = argument.size() >= 2 && argument.front() == '"' && argument.back() == '"';
  ShowTurn(conversation_.Say(is_quoted ? argument.substr(1, argument.size() - 2) : argument));
}

void Prompt::ShowTurn(const Turn& turn) {
  Note(recorder_.Take(turn));
  if (!turn.answer)
    return lines_.Show((turn.is_sent ? turn.command.action + ": " : "") + turn.answer.error().message);
  const std::string exception = conversation_.ExceptionOf(turn);
  lines_.Show(DescribeAnswer(turn.command, *turn.answer) +
              (turn.item.empty() ? "" : ", the item \"" + ForTerminal(turn.item) + "\"") +
              (exception.empty() ? "" : "\n  the callback threw: " + ForTerminal(exception)));
}

void Prompt::Note(const Status& status) {
  if (!status) lines_.Show(status.error().message);
}

void Prompt::NoteStatement(const std::string& statement, const Status& status, const std::string& done) {
  if (!status) return lines_.Show(status.error().message);
  Note(recorder_.TakeStatement(statement));
  lines_.Show(done);
}

void Prompt::Help(const std::string& /*argument*/) {
  std::string text = "Commands\n";
  for (const CommandRow& command : Commands()) text += Row(command.usage, command.help);
  text += "\nPhrases: (a|b) is a choice, [a] is optional, {…} is a placeholder\n";
  for (const Phrase& phrase : conversation_.phrases().phrases()) text += Row(phrase.pattern, phrase.becomes);
  text += "\nPieces of phrases\n";
  for (const auto& [name, pattern] : conversation_.phrases().pieces()) text += Row(name, pattern);
  lines_.Show(text +
              "\nRaw: ACTION_NAME data, or ACTION_NAME key=value key=\"two words\" if the data is a bundle");
}

void Prompt::Apps(const std::string& /*argument*/) {
  std::string text;
  for (const std::string& app : conversation_.service().apps()) text += (text.empty() ? "" : "\n") + app;
  lines_.Show(text.empty() ? "No application is registered: its page has not called listen()." : text);
}

void Prompt::ListActions(const std::string& /*argument*/) {
  const RegisteredActions& registered = conversation_.registered();
  if (!registered.is_known()) {
    return lines_.Show(
        "The page has not registered since the prompt began; enter reload to make it register.");
  }
  constexpr size_t kWidth = 34;
  std::string text;
  for (const ActionInfo& action : Actions()) {
    const std::string name(action.name);
    if (!registered.Has(name)) continue;
    text += (text.empty() ? "" : "\n") + name + std::string(kWidth - name.size(), ' ') +
            conversation_.phrases().SampleFor(name);
  }
  lines_.Show(text);
}

void Prompt::Items(const std::string& argument) {
  const Result<ItemsArguments> arguments = ReadItemsArguments(argument);
  if (!arguments) return lines_.Show(arguments.error().message);
  Result<ItemList> items = conversation_.AskItems();
  if (!items && !conversation_.is_listening()) return ShowItemsOfSilentPage(arguments->png_file);
  if (!items) return lines_.Show(items.error().message);
  const std::string text =
      arguments->is_diff && items_ ? Describe(CompareItems(*items_, *items)) : ItemTable(*items);
  lines_.Show(text + DescribeItemsAnswer(*items, *conversation_.items_turn().answer));
  Note(recorder_.Take(*items));
  if (!arguments->png_file.empty()) SavePicture(*items, arguments->png_file);
  items_ = std::move(*items);
}

void Prompt::RunStatement(const std::string& statement) {
  const VoiceScript script = ParseVoiceScript(statement, "", SpokenLanguage());
  if (!script.errors.empty()) return lines_.Show(script.errors[0].message);
  Session session(conversation_, std::chrono::milliseconds(0));
  const Verdict verdict = script.tests[0].steps[0].run(session);
  NoteStatement(statement, verdict ? Status() : Fail(verdict.error().message), "The page has taken it.");
}

void Prompt::Press(const std::string& argument) {
  RunStatement("press " + argument);
}

void Prompt::Type(const std::string& argument) {
  RunStatement("type " + argument);
}

void Prompt::ShowItemsOfSilentPage(const std::string& png_file) {
  const Result<ItemList> items = conversation_.LookForItems();
  if (!items) return lines_.Show(items.error().message);
  lines_.Show(ItemTable(*items) + "They can be selected by voice once the page has called listen().");
  if (!png_file.empty()) SavePicture(*items, png_file);
}

void Prompt::SavePicture(const ItemList& items, const std::string& file) {
  const Result<std::string> picture = conversation_.PictureOf(items);
  const Status saved = picture ? WriteOutputFile(file, *picture) : Status(Fail(picture.error()));
  lines_.Show(saved ? "Saved the screenshot as " + file + "." : saved.error().message);
}

void Prompt::Record(const std::string& argument) {
  if (argument.empty()) return lines_.Show("Expected a file name or stop after record.");
  if (argument == "stop") {
    lines_.Show(recorder_.is_recording() ? "The recording has stopped." : "No recording is in progress.");
    return Note(recorder_.End());
  }
  const Status begun = recorder_.Begin(argument);
  lines_.Show(begun ? "Recording to " + argument +
                          ". A replay starts with a newly loaded page; enter reload to start from one, too."
                    : begun.error().message);
}

void Prompt::Restart(const std::string& /*argument*/) {
  NoteStatement("restart", conversation_.Restart(),
                "The voice service has restarted; the application has registered again.");
}

void Prompt::Reload(const std::string& /*argument*/) {
  if (!conversation_.is_listening())
    return NoteStatement("reload", conversation_.runtime().Reload(), "The page has been reloaded.");
  NoteStatement("reload", conversation_.Reload(), "The page has been reloaded and listens.");
}

void Prompt::Quit(const std::string& /*argument*/) {
  is_over_ = true;
}

}  // namespace corvis::kit
