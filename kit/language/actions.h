// The voice actions as the service knows them: their names, and how their data travels.
#ifndef CORVIS_KIT_LANGUAGE_ACTIONS_H_
#define CORVIS_KIT_LANGUAGE_ACTIONS_H_

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace corvis::kit {

using Entries = std::vector<std::pair<std::string, std::string>>;

struct ActionInfo {
  std::string_view name;
  // The property of the application's callbacks object; empty for what the API handles itself.
  std::string_view callback;
  // Whether the data is an encoded bundle; it is plain text otherwise.
  bool takes_bundle;
};

// All actions that the service can send.
const std::vector<ActionInfo>& Actions();

// Null when there is no such action.
const ActionInfo* FindAction(std::string_view name);

// What the service sends to a page: an action with its data, as plain text or as entries of a bundle.
struct Command {
  std::string action;
  std::string text;
  Entries entries;
  bool is_bundle = false;
};

// The data for people: the text, or key=value pairs.
std::string DescribeData(const Command& command);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_LANGUAGE_ACTIONS_H_
