// The interactive prompt of a run: commands and phrases.
#ifndef CORVIS_KIT_CLI_PROMPT_H_
#define CORVIS_KIT_CLI_PROMPT_H_

#include <optional>
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
  Prompt(Conversation& conversation, LineSource& lines) : conversation_(conversation), lines_(lines) {}

  // Reads lines until the end of input or "quit".
  void Run();

  // The words for completion: commands, phrases and actions.
  static std::vector<std::string> CompletionWords(const Phrasebook& phrases);

 private:
  struct CommandRow {
    const char* name;
    const char* usage;
    const char* help;
    void (Prompt::*run)(const std::string& argument);
  };
  static const std::vector<CommandRow>& Commands();

  void Handle(const std::string& line);
  void SendRaw(const std::string& text);
  void ShowTurn(const Turn& turn);
  // Does and records a statement of voice scripts.
  void RunStatement(const std::string& statement);
  // Lists the items of a page that doesn't listen, with a picture unless `png_file` is empty.
  void ShowItemsOfSilentPage(const std::string& png_file);
  void SavePicture(const ItemList& items, const std::string& file);
  // Prints an error; prints nothing on success.
  void Note(const Status& status);
  // On success records the statement and prints `done`; otherwise prints the error.
  void NoteStatement(const std::string& statement, const Status& status, const std::string& done);

  void Help(const std::string& argument);
  void Apps(const std::string& argument);
  void ListActions(const std::string& argument);
  void Press(const std::string& argument);
  void Type(const std::string& argument);
  void Items(const std::string& argument);
  void SayPhrase(const std::string& argument);
  void Record(const std::string& argument);
  void Restart(const std::string& argument);
  void Reload(const std::string& argument);
  void Quit(const std::string& argument);

  Conversation& conversation_;
  LineSource& lines_;
  bool is_over_ = false;
  // The previous list, for items --diff.
  std::optional<ItemList> items_;
  Recorder recorder_;
};

}  // namespace corvis::kit

#endif  // CORVIS_KIT_CLI_PROMPT_H_
