// The prompt of a run: its commands, and phrases.
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
  // Speaks with the application as the lines ask for, and shows there what comes of it.
  Prompt(Conversation& conversation, LineSource& lines) : conversation_(conversation), lines_(lines) {}

  // Takes lines until there are no more, or "quit".
  void Run();

  // What completes a line: commands, phrases, actions.
  static std::vector<std::string> CompletionWords();

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
  void SavePicture(const ItemList& items, const std::string& file);
  // Shows an error; success shows nothing.
  void Note(const Status& status);
  // Shows that the statement was done, and records it.
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
  // The last items, for comparing.
  std::optional<ItemList> items_;
  Recorder recorder_;
};

}  // namespace corvis::kit

#endif  // CORVIS_KIT_CLI_PROMPT_H_
