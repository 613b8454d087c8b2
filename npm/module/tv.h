// A TV with one application: the voice service, the conversation with the page, and what happens, as events.
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

// Every operation is a step, announced to the page as the event that docs/voice-scripts.md describes; what
// stands in a script's file is not in it.
class Tv {
 public:
  // Starts the voice service. `privileges` are names or URIs.
  Tv(const std::string& app_id, const std::vector<std::string>& privileges);

  const std::string& app_id() const { return conversation_.app_id(); }
  bool HasApp() const { return service_.HasApp(app_id()); }

  // A phrase, or "select TITLE" for an item of the screen.
  void Say(const std::string& phrase);
  // An action with its data, as a script's send has it.
  void Send(const std::string& raw);
  // An action whose data is a bundle of these entries.
  void SendEntries(const std::string& action, const kit::Entries& entries);
  // What can be selected on the screen: the page's answer, and the numbers of the items with this title, of
  // all for an empty one.
  void Items(const std::string& title);
  void Restart();
  // A phrase for each action that the page handles itself.
  std::vector<std::string> Phrases() const;
  void SetPrivileges(const std::vector<std::string>& privileges);

  // Delivers what waits on the bus.
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

// The text of a value, whatever bytes are in its strings.
std::string TextOf(const Json& value);

}  // namespace corvis::simulator

#endif  // CORVIS_NPM_MODULE_TV_H_
