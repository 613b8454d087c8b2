// The prompt's commands, by a table.
#include "cli/prompt.h"

#include <sstream>
#include <utility>

#include "language/phrase_pattern.h"
#include "language/phrases.h"
#include "language/raw_command.h"
#include "language/suggestions.h"
#include "output/output_file.h"

namespace corvis::kit {

const std::vector<Console::CommandRow>& Console::Commands() {
  static const std::vector<CommandRow> kCommands = {
      {"help", "help", "this list", &Console::Help},
      {"items", "items [--diff] [--png FILE]",
       "what can be selected on the screen; --diff: what changed since the last time; --png: a picture",
       &Console::Items},
      {"commands", "commands", "the actions that the page registered, with a phrase for each",
       &Console::ListActions},
      {"say", "say PHRASE", "the same as the phrase alone", &Console::SayPhrase},
      {"apps", "apps", "the registered applications", &Console::Apps},
      {"record", "record FILE, record stop", "writes what follows as a voice script, to replay it",
       &Console::Record},
      {"restart", "restart", "plays the voice service's restart", &Console::Restart},
      {"reload", "reload", "loads the page again", &Console::Reload},
      {"quit", "quit", "ends the run (so does Ctrl-D)", &Console::Quit},
  };
  return kCommands;
}

std::vector<std::string> Console::CompletionWords() {
  std::vector<std::string> words;
  for (const CommandRow& row : Commands()) words.emplace_back(row.name);
  for (const PhraseRow& row : PhraseTable()) words.push_back(SampleOfPattern(row.pattern));
  for (const ActionInfo& action : Actions()) words.emplace_back(action.name);
  return words;
}

void Console::Run() {
  while (!is_over_) {
    const std::optional<std::string> line = lines_.Next();
    if (!line) return;
    Handle(*line);
  }
}

void Console::Handle(const std::string& line) {
  const size_t begin = line.find_first_not_of(" \t");
  if (begin == std::string::npos || line[begin] == '#') return;
  const std::string text = line.substr(begin);
  const size_t blank = text.find(' ');
  const std::string word = text.substr(0, blank);
  for (const CommandRow& row : Commands()) {
    if (word != row.name) continue;
    return (this->*row.run)(blank == std::string::npos ? "" : text.substr(blank + 1));
  }
  if (!IsRawCommand(text)) return SayPhrase(text);
  const auto command = ParseRawCommand(text);
  if (!command) return lines_.Show(command.error().message);
  const std::string warning = UnknownActionWarning(*command);
  if (!warning.empty()) lines_.Show(warning);
  ShowTurn(conversation_.Send(*command, text));
}

void Console::ShowTurn(const Turn& turn) {
  recorder_.Take(turn);
  if (!turn.answer) {
    lines_.Show((turn.is_sent ? turn.command.action + ": " : "") + turn.answer.error().message);
    return;
  }
  const Answer& answer = *turn.answer;
  char time[96];
  std::snprintf(time, sizeof(time), "   (%.1f ms)",
                std::chrono::duration<double, std::milli>(answer.took).count());
  const std::string data = DescribeData(turn.command);
  std::string text = turn.command.action + (data.empty() ? "" : " " + data) + "  ->  " + answer.data + time;
  if (answer.pieces > 1)
    text +=
        ", " + std::to_string(answer.data.size()) + " bytes in " + std::to_string(answer.pieces) + " pieces";
  if (answer.word == "appContext") text += ", as the application's state";
  const std::string exception = conversation_.ExceptionOf(turn);
  if (!exception.empty()) text += "\n  the callback threw: " + exception;
  lines_.Show(text);
}

void Console::SayPhrase(const std::string& argument) {
  std::string phrase = argument;
  if (phrase.size() >= 2 && phrase.front() == '"' && phrase.back() == '"')
    phrase = phrase.substr(1, phrase.size() - 2);
  ShowTurn(conversation_.Say(phrase));
}

void Console::Help(const std::string& /*argument*/) {
  std::string text = "Commands\n";
  const auto row = [&text](const std::string& left, const std::string& right) {
    text += "  " + left + std::string(left.size() < 40 ? 40 - left.size() : 1, ' ') + "  " + right + "\n";
  };
  for (const CommandRow& command : Commands()) row(command.usage, command.help);
  text += "\nPhrases: (a|b) one of these, [a] may be left out, {…} is yours to fill in\n";
  for (const PhraseRow& phrase : PhraseTable()) row(phrase.pattern, phrase.action);
  row("select {title}", "the item of the screen with this title");
  text += "\nRaw: ACTION_NAME data, or ACTION_NAME key=value key=\"two words\" where the data is a bundle";
  lines_.Show(text);
}

void Console::Apps(const std::string& /*argument*/) {
  std::string text;
  for (const std::string& app : conversation_.service().apps()) text += (text.empty() ? "" : "\n") + app;
  lines_.Show(text.empty() ? "No application is registered: its page has not called listen()." : text);
}

void Console::ListActions(const std::string& /*argument*/) {
  const RegisteredActions& registered = conversation_.registered();
  if (!registered.is_known()) {
    return lines_.Show("The page has not registered since the prompt began; reload lets it do so again.");
  }
  std::string text;
  for (const ActionInfo& action : Actions()) {
    if (!registered.Has(std::string(action.name))) continue;
    const std::string name(action.name);
    text += (text.empty() ? "" : "\n") + name + std::string(34 - name.size(), ' ') + SamplePhrase(name);
  }
  lines_.Show(text);
}

void Console::Items(const std::string& argument) {
  std::istringstream words(argument);
  bool is_diff = false;
  std::string file;
  for (std::string word; words >> word;) {
    if (word == "--diff") {
      is_diff = true;
    } else if (word != "--png" || !(words >> file)) {
      return lines_.Show("items takes --diff and --png FILE, not " + word + ".");
    }
  }
  Result<ItemList> asked = conversation_.AskItems();
  if (!asked) return lines_.Show(asked.error().message);
  const auto items = std::exchange(items_, std::move(*asked));
  const std::string text = is_diff && items ? Describe(CompareItems(*items, *items_)) : ItemTable(*items_);
  lines_.Show(text + DescribeItemsAnswer(*items_, *conversation_.items_turn().answer));
  recorder_.Take(*items_);
  if (!file.empty()) SavePicture(file);
}

void Console::SavePicture(const std::string& file) {
  const Result<std::string> picture = conversation_.PictureOf(*items_);
  const Status written = picture ? WriteOutputFile(file, *picture) : Fail(picture.error());
  lines_.Show(written ? "The picture is in " + file + "." : written.error().message);
}

void Console::Record(const std::string& argument) {
  if (argument.empty()) return lines_.Show("record takes the name of the file to write, or stop.");
  if (argument != "stop") {
    const std::string problem = recorder_.Begin(argument);
    return lines_.Show(!problem.empty()
                           ? problem
                           : "Recording to " + argument +
                                 ". A replay begins with a fresh page; so does this after reload.");
  }
  lines_.Show(recorder_.is_recording() ? "The recording is over." : "Nothing is being recorded.");
  recorder_.End();
}

void Console::ShowStatement(const std::string& statement, const Status& status, const std::string& done) {
  if (status) recorder_.TakeStatement(statement);
  lines_.Show(status ? done : status.error().message);
}

void Console::Restart(const std::string& /*argument*/) {
  ShowStatement("restart", conversation_.Restart(),
                "The voice service has restarted; the application has registered again.");
}

void Console::Reload(const std::string& /*argument*/) {
  ShowStatement("reload", conversation_.Reload(), "The page is loaded again and listens.");
}

void Console::Quit(const std::string& /*argument*/) {
  is_over_ = true;
}

}  // namespace corvis::kit
