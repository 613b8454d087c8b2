// The prompt of the voice service: its commands, and phrases.
#ifndef CORVIS_KIT_CLI_PROMPT_H_
#define CORVIS_KIT_CLI_PROMPT_H_

#include <optional>
#include <string>
#include <vector>

#include "app/conversation.h"
#include "app/items.h"
#include "cli/line_source.h"
#include "cli/recorder.h"

namespace corvis::kit {

class Console {
 public:
  Console(Conversation& conversation, LineSource& lines) : conversation_(conversation), lines_(lines) {}

  // Takes lines until the end of input or "quit".
  void Run();

  // Everything that completes what is typed: commands, phrases, actions.
  static std::vector<std::string> CompletionWords();

 private:
  using Handler = void (Console::*)(const std::string& argument);
  struct CommandRow {
    const char* name;
    const char* usage;
    const char* help;
    Handler run;
  };
  static const std::vector<CommandRow>& Commands();

  void Handle(const std::string& line);
  void ShowTurn(const Turn& turn);
  void SavePicture(const std::string& file);
  // Shows what was done, or why it wasn't, and records it.
  void ShowStatement(const std::string& statement, const Status& status, const std::string& done);

  void Help(const std::string& argument);
  void Apps(const std::string& argument);
  void ListActions(const std::string& argument);
  void Items(const std::string& argument);
  void SayPhrase(const std::string& argument);
  void Record(const std::string& argument);
  void Restart(const std::string& argument);
  void Reload(const std::string& argument);
  void Quit(const std::string& argument);

  Conversation& conversation_;
  LineSource& lines_;
  bool is_over_ = false;
  // How many exceptions the page had told of before the last thing said.
  // The last items, for comparing.
  std::optional<ItemList> items_;
  Recorder recorder_;
};

}  // namespace corvis::kit

#endif  // CORVIS_KIT_CLI_PROMPT_H_
