// The commands of the prompt, dispatched by a table.
#include "cli/prompt.h"

#include <algorithm>
#include <cctype>
#include <chrono>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <sstream>
#include <utility>

#include "corvis_tv/remote_keys.h"
#include "language/raw_command.h"
#include "language/suggestions.h"
#include "output/output_file.h"
#include "output/text_forms.h"
#include "report/wording.h"
#include "script/line_reader.h"
#include "script/page_look.h"
#include "script/script_reader.h"
#include "script/session.h"

namespace corvis::kit {

namespace {

// One line of the prompt's two-column lists.
std::string PromptLine(const std::string& left, const std::string& right) {
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

constexpr const char* kTaken = "The page has taken it.";

// Words in lines of a terminal's width.
std::string WrappedWords(const std::vector<std::string>& words) {
  constexpr size_t kWidth = 76;
  std::string text;
  size_t used = kWidth;
  for (const std::string& word : words) {
    const bool is_line_full = used + word.size() + 2 > kWidth;
    text += (!is_line_full ? "  " : text.empty() ? "  " : "\n  ") + word;
    used = (is_line_full ? 0 : used) + word.size() + 2;
  }
  return text + "\n";
}

// Whether the word is there as a whole: "sub" is not in "subtitles".
bool HasWord(const std::string& text, const std::string& word) {
  const auto is_part = [&text](size_t at) {
    return at < text.size() && (std::isalnum(static_cast<unsigned char>(text[at])) != 0 || text[at] == '_');
  };
  for (size_t at = text.find(word); at != std::string::npos; at = text.find(word, at + 1)) {
    if ((at == 0 || !is_part(at - 1)) && !is_part(at + word.size())) return true;
  }
  return false;
}

// The word, and the names of the pieces of phrases that contain it.
std::vector<std::string> WithPiecesOf(const Phrasebook& phrases, const std::string& word) {
  std::vector<std::string> words = {word};
  for (size_t i = 0; i < words.size(); ++i) {
    for (const auto& [name, pattern] : phrases.pieces()) {
      const bool is_new = std::find(words.begin(), words.end(), name) == words.end();
      if (is_new && HasWord(pattern, words[i])) words.push_back(name);
    }
  }
  return words;
}

bool IsQuoted(const std::string& argument) {
  return !argument.empty() && (argument[0] == '"' || argument[0] == '`');
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
      {"help", "help [TOPIC]",
       "prints this list, or what concerns a command, an ACTION_ or a word of a phrase", &Prompt::Help,
       &Prompt::Topics},
      {"items", "items [--diff] [--png FILE]",
       "lists what can be selected; --diff: changes since the last time; --png: saves a screenshot",
       &Prompt::Items, &Prompt::ItemsOptions},
      {"show", "show \"SELECTOR\" [COMPARISON]",
       "shows the text of the element of a CSS selector, or waits until it is as compared", &Prompt::ShowText,
       nullptr},
      {"value", "value \"EXPRESSION\" [COMPARISON]", "the same for the value of a JavaScript expression",
       &Prompt::Value, nullptr},
      {"commands", "commands", "lists the actions that the page registered, with a phrase for each",
       &Prompt::ListActions, nullptr},
      {"press", "press KEY [N times]", "presses a key of the remote control: Left, OK, Back, Play, \"5\", …",
       &Prompt::Press, &Prompt::KeyNames},
      {"type", "type \"TEXT\"", "types into the focused field", &Prompt::Type, nullptr},
      {"say", "say PHRASE", "says the phrase, as does PHRASE alone", &Prompt::SayPhrase, &Prompt::Phrases},
      {"apps", "apps", "lists the registered applications", &Prompt::Apps, nullptr},
      {"record", "record FILE, record stop", "records phrases, keys and looks as a voice script for replay",
       &Prompt::Record, &Prompt::RecordOptions},
      {"restart", "restart", "simulates a restart of the voice service", &Prompt::Restart, nullptr},
      {"reload", "reload", "reloads the page", &Prompt::Reload, nullptr},
      {"quit", "quit", "ends the run (so does Ctrl-D)", &Prompt::Quit, nullptr},
  };
  return kCommands;
}

Prompt::Prompt(Conversation& conversation, LineSource& lines) : conversation_(conversation), lines_(lines) {
  lines_.set_completer([this](const std::string& typed) { return Continuations(typed); });
}

Prompt::~Prompt() {
  lines_.set_completer({});
}

std::vector<std::string> Prompt::Continuations(const std::string& typed) const {
  const Phrasebook& phrases = conversation_.phrases();
  const size_t space = typed.find(' ');
  if (space != std::string::npos) {
    const std::string beginning = typed.substr(0, space + 1);
    const std::string word = typed.substr(0, space);
    if (FindAction(word) != nullptr) return Each(beginning, ValuesOfAction(phrases, word));
    for (const CommandRow& row : Commands()) {
      if (row.values != nullptr && word == row.name) return Each(beginning, (this->*row.values)());
    }
    const std::string selecting = SelectingPart(phrases, typed);
    if (!selecting.empty()) return Each(selecting, TitlesOnScreen());
  }
  std::vector<std::string> lines = Phrases();
  for (const CommandRow& row : Commands()) lines.emplace_back(row.name);
  for (const ActionInfo& action : Actions()) lines.emplace_back(action.name);
  return lines;
}

std::vector<std::string> Prompt::TitlesOnScreen() const {
  std::vector<std::string> titles;
  const Result<ItemList> items = conversation_.LookForItems();
  if (!items) return titles;
  for (const Item& item : items->items) {
    const bool is_new = std::find(titles.begin(), titles.end(), item.title) == titles.end();
    // A title with control characters can't be typed.
    if (is_new && !item.title.empty() && ForTerminal(item.title) == item.title) titles.push_back(item.title);
  }
  return titles;
}

std::vector<std::string> Prompt::KeyNames() const {
  std::vector<std::string> names;
  for (const tv::RemoteKey& key : tv::kRemoteKeys) names.emplace_back(key.name);
  return names;
}

std::vector<std::string> Prompt::Topics() const {
  std::vector<std::string> topics;
  for (const CommandRow& row : Commands()) topics.emplace_back(row.name);
  for (const ActionInfo& action : Actions()) topics.emplace_back(action.name);
  return topics;
}

std::vector<std::string> Prompt::Phrases() const {
  return conversation_.phrases().Samples();
}

std::vector<std::string> Prompt::ItemsOptions() const {
  return {"--diff", "--png"};
}

std::vector<std::string> Prompt::RecordOptions() const {
  return {"stop"};
}

void Prompt::Run() {
  while (!is_over_) {
    is_reading_ = true;
    const std::optional<std::string> line = lines_.Next();
    is_reading_ = false;
    if (!line) return;
    Handle(*line);
    ReloadChanged();
  }
}

void Prompt::TakeChange() {
  is_changed_ = true;
  if (!is_reading_) return;
  is_reading_ = false;
  ReloadChanged();
  is_reading_ = true;
}

void Prompt::ReloadChanged() {
  while (std::exchange(is_changed_, false)) {
    const Status reloaded = conversation_.runtime().Reload();
    lines_.Show(reloaded ? "The application has changed; the page has been reloaded."
                         : reloaded.error().message);
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

std::string Prompt::PhraseRows(const std::string& word) const {
  const std::vector<std::string> words = WithPiecesOf(conversation_.phrases(), word);
  std::string text;
  for (const Phrase& phrase : conversation_.phrases().phrases()) {
    const bool has_one = std::any_of(words.begin(), words.end(), [&phrase](const std::string& one) {
      return HasWord(phrase.pattern, one) || HasWord(phrase.becomes, one);
    });
    if (has_one || word.empty()) text += PromptLine(phrase.pattern, phrase.becomes);
  }
  return text;
}

std::string Prompt::HelpOn(const std::string& topic) const {
  std::string text;
  for (const CommandRow& command : Commands()) {
    if (topic != command.name) continue;
    text = PromptLine(command.usage, command.help);
    // The other commands' values are in the lists below.
    if (command.values == &Prompt::KeyNames) text += "\nKeys\n" + WrappedWords(KeyNames());
  }
  const std::string phrases = PhraseRows(topic);
  if (!phrases.empty()) text += (text.empty() ? "" : "\n") + std::string("Phrases\n") + phrases;
  const ActionInfo* action = FindAction(topic);
  if (action == nullptr) return text;
  const std::vector<std::string> values = ValuesOfAction(conversation_.phrases(), topic);
  if (!values.empty()) text += "\nData\n" + WrappedWords(values);
  if (!action->callback.empty()) text += "\nCallback\n  " + std::string(action->callback) + "\n";
  return text;
}

void Prompt::Help(const std::string& argument) {
  std::istringstream words(argument);
  if (std::string topic; words >> topic) {
    const std::string text = HelpOn(topic);
    if (!text.empty()) return lines_.ShowPages(text.substr(0, text.size() - 1));
    return lines_.Show("Unknown topic \"" + topic + "\"." + DidYouMean(topic, Topics()) +
                       " Expected a command, an ACTION_ or a word of a phrase; help lists them.");
  }
  std::string text = "Commands\n";
  for (const CommandRow& command : Commands()) text += PromptLine(command.usage, command.help);
  text += "\nPhrases: (a|b) is a choice, [a] is optional, {…} is a placeholder\n" + PhraseRows("");
  text += "\nPieces of phrases\n";
  for (const auto& [name, pattern] : conversation_.phrases().pieces()) text += PromptLine(name, pattern);
  lines_.ShowPages(
      text + "\nRaw: ACTION_NAME data, or ACTION_NAME key=value key=\"two words\" if the data is a bundle");
}

void Prompt::Apps(const std::string& /*argument*/) {
  std::string text;
  for (const std::string& app : conversation_.service().apps()) text += (text.empty() ? "" : "\n") + app;
  lines_.Show(text.empty() ? "No application is registered: its page has not called listen()." : text);
}

void Prompt::ListActions(const std::string& /*argument*/) {
  // Registrations are read from the console, whose lines arrive before this call's reply. A page that doesn't
  // respond has no further ones.
  static_cast<void>(conversation_.runtime().Sync());
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
  lines_.ShowPages(text);
}

void Prompt::Items(const std::string& argument) {
  // "items count is 3" is a statement of voice scripts.
  if (argument.compare(0, 5, "count") == 0) return RunStatement("items " + argument, "It is so.");
  ListItems(argument);
}

void Prompt::ListItems(const std::string& argument) {
  const Result<ItemsArguments> arguments = ReadItemsArguments(argument);
  if (!arguments) return lines_.Show(arguments.error().message);
  Result<ItemList> items = conversation_.AskItems();
  if (!items && !conversation_.is_listening()) return ShowItemsOfSilentPage(arguments->png_file);
  if (!items) return lines_.Show(items.error().message);
  conversation_.NoteHidden(*items);
  const std::string text =
      arguments->is_diff && items_ ? Describe(CompareItems(*items_, *items)) : ItemTable(*items);
  lines_.ShowPages(text + DescribeItemsAnswer(*items, *conversation_.items_turn().answer));
  Note(recorder_.Take(*items));
  if (!arguments->png_file.empty()) SavePicture(*items, arguments->png_file);
  items_ = std::move(*items);
}

void Prompt::RunStatement(const std::string& statement, const std::string& done) {
  const VoiceScript script = ParseVoiceScript(statement, "", SpokenLanguage());
  if (!script.errors.empty()) return lines_.Show(script.errors[0].message);
  Session session(conversation_, std::chrono::milliseconds(0));
  const Verdict verdict = script.tests[0].steps[0].run(session);
  NoteStatement(statement, verdict ? Status() : Fail(ForTerminal(Describe(verdict.error()))), done);
}

void Prompt::Press(const std::string& argument) {
  RunStatement("press " + argument, kTaken);
}

void Prompt::Type(const std::string& argument) {
  RunStatement("type " + argument, kTaken);
}

std::optional<std::string> Prompt::OnlyText(const std::string& argument) {
  LineReader line(argument);
  std::string text = line.Text();
  return line.has_failed() || !line.is_at_end() ? std::nullopt : std::optional(std::move(text));
}

void Prompt::ShowText(const std::string& argument) {
  // Without a text in quotation marks it is a phrase, such as "show the lists".
  if (!IsQuoted(argument)) return SayPhrase("show " + argument);
  const std::optional<std::string> selector = OnlyText(argument);
  if (!selector) return RunStatement("show " + argument, "It is so.");
  ShowValue("show " + Quoted(*selector), kit::ShownText(conversation_, *selector));
}

void Prompt::Value(const std::string& argument) {
  if (!IsQuoted(argument)) return SayPhrase("value " + argument);
  const std::optional<std::string> expression = OnlyText(argument);
  if (!expression) return RunStatement("value " + argument, "It is so.");
  ShowValue("value " + Quoted(*expression), ValueOf(conversation_, *expression));
}

void Prompt::ShowValue(const std::string& statement, const Result<nlohmann::json>& value) {
  if (!value) return lines_.Show(ForTerminal(value.error().message));
  const std::string json = value->dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
  const std::string matcher = value->is_structured()
                                  ? "json " + json
                                  : "is " + Quoted(value->is_string() ? value->get<std::string>() : json);
  Note(recorder_.TakeStatement(statement + " " + matcher));
  lines_.Show(LinesForTerminal(value->is_string() ? value->get<std::string>() : json));
}

void Prompt::ShowItemsOfSilentPage(const std::string& png_file) {
  Result<ItemList> items = conversation_.LookForItems();
  if (!items) return lines_.Show(items.error().message);
  conversation_.NoteHidden(*items);
  lines_.Show(ItemTable(*items) + "They can be selected by voice once the page has called listen().");
  if (!png_file.empty()) SavePicture(*items, png_file);
}

void Prompt::SavePicture(const ItemList& items, const std::string& file) {
  const Result<std::string> picture = conversation_.PictureOf(items);
  written_.insert(std::filesystem::absolute(file).lexically_normal().string());
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
