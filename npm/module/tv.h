// A TV with one application: the voice service and the conversation with the page, reported as events.
#ifndef CORVIS_NPM_MODULE_TV_H_
#define CORVIS_NPM_MODULE_TV_H_

#include <functional>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "app/conversation.h"
#include "base/result.h"
#include "service/voice_service.h"

namespace corvis::simulator {

using Json = nlohmann::json;

// Every operation is a step, reported to the page as the event that docs/voice-scripts.md describes, without
// the position in a script file.
class Tv {
 public:
  // Starts the voice service. `privileges` are names or URIs.
  Tv(const std::string& app_id, const std::vector<std::string>& privileges);

  const std::string& app_id() const { return conversation_.app_id(); }
  bool HasApp() const { return service_.HasApp(app_id()); }

  // Says a phrase, or "select TITLE" for an item on the screen.
  void Say(const std::string& phrase);
  // Sends an action with its data, in the syntax of the script statement `send`.
  void Send(const std::string& raw);
  // Sends an action whose data is a bundle of these entries.
  void SendEntries(const std::string& action, const kit::Entries& entries);
  // Requests the items on the screen. The event has the page's answer and the numbers of the items with this
  // title, or of all items if the title is empty.
  void Items(const std::string& title);
  void Restart();
  // A sample phrase for each action that the page handles itself.
  std::vector<std::string> Phrases() const;
  void SetPrivileges(const std::vector<std::string>& privileges);
  // Speaks the language that a phrase file brings. Changes nothing on failure.
  kit::Status Speak(const std::string& phrase_file);

  // Delivers everything that is queued on the bus.
  static void DeliverAll();

 private:
  using Run = std::function<void(Json& event)>;

  void SendCommand(const std::string& raw, const kit::Result<kit::Command>& command);
  void Speak(const char* statement, const std::string& said, const std::function<kit::Turn()>& speak);
  void Step(const char* statement, const std::string& argument, const Run& run);
  void AddTurn(Json& event, const kit::Turn& turn);

  kit::VoiceService service_;
  kit::Conversation conversation_;
};

// Serializes a value. Invalid UTF-8 in its strings is replaced.
std::string TextOf(const Json& value);

}  // namespace corvis::simulator

#endif  // CORVIS_NPM_MODULE_TV_H_
