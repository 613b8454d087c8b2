// The interactive prompt of a run: commands and phrases.
#ifndef CORVIS_KIT_CLI_PROMPT_H_
#define CORVIS_KIT_CLI_PROMPT_H_

#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "app/conversation.h"
#include "app/items.h"
#include "base/result.h"
#include "cli/line_source.h"
#include "cli/recorder.h"

namespace corvis::kit {

class Prompt {
 public:
  // Reads commands and phrases from `lines`, executes them in `conversation`, and prints the results to
  // `lines`.
  Prompt(Conversation& conversation, LineSource& lines);
  ~Prompt();
  Prompt(const Prompt&) = delete;
  Prompt& operator=(const Prompt&) = delete;

  // Reads lines until the end of input or "quit".
  void Run();

  // The application's files have changed: reloads the page, once a running command is done.
  void TakeChange();
  // Whether the prompt has written this file, given by its absolute path.
  bool HasWritten(const std::string& path) const { return written_.count(path) > 0; }

  // What could follow a typed text: commands, phrases and actions, or what the command, phrase or action that
  // it starts with can take.
  std::vector<std::string> Continuations(const std::string& typed) const;

 private:
  struct CommandRow {
    const char* name;
    const char* usage;
    const char* help;
    void (Prompt::*run)(const std::string& argument);
    // What can follow the name; null for nothing certain.
    std::vector<std::string> (Prompt::*values)() const;
  };
  static const std::vector<CommandRow>& Commands();

  void Handle(const std::string& line);
  void ReloadChanged();
  void SendRaw(const std::string& text);
  void ShowTurn(const Turn& turn);
  // Runs and records a statement of voice scripts; `done` is shown on success.
  void RunStatement(const std::string& statement, const std::string& done);
  // Whether the argument is a text in quotation marks and nothing else, which it then returns.
  static std::optional<std::string> OnlyText(const std::string& argument);
  // Shows a value and records that it is so.
  void ShowValue(const std::string& statement, const Result<nlohmann::json>& value);
  // Lists the items of a page that doesn't listen, with a picture unless `png_file` is empty.
  void ShowItemsOfSilentPage(const std::string& png_file);
  void SavePicture(const ItemList& items, const std::string& file);
  // Prints an error; prints nothing on success.
  void Note(const Status& status);
  // On success records the statement and prints `done`; otherwise prints the error.
  void NoteStatement(const std::string& statement, const Status& status, const std::string& done);

  std::vector<std::string> TitlesOnScreen() const;
  std::vector<std::string> KeyNames() const;
  std::vector<std::string> Topics() const;
  std::vector<std::string> Phrases() const;
  std::vector<std::string> ItemsOptions() const;
  std::vector<std::string> RecordOptions() const;

  // The lists of the help that belong to a topic; empty for an unknown one.
  std::string HelpOn(const std::string& topic) const;
  // The phrases that contain a word, whose action it is, or all if it is empty.
  std::string PhraseRows(const std::string& word) const;
  void Help(const std::string& argument);
  void Apps(const std::string& argument);
  void ListActions(const std::string& argument);
  void Press(const std::string& argument);
  void Type(const std::string& argument);
  void ShowText(const std::string& argument);
  void Value(const std::string& argument);
  void Items(const std::string& argument);
  void ListItems(const std::string& argument);
  void SayPhrase(const std::string& argument);
  void Record(const std::string& argument);
  void Restart(const std::string& argument);
  void Reload(const std::string& argument);
  void Quit(const std::string& argument);

  Conversation& conversation_;
  LineSource& lines_;
  bool is_over_ = false;
  bool is_reading_ = false;
  bool is_changed_ = false;
  std::set<std::string> written_;
  // The previous list, for items --diff.
  std::optional<ItemList> items_;
  Recorder recorder_;
};

}  // namespace corvis::kit

#endif  // CORVIS_KIT_CLI_PROMPT_H_
