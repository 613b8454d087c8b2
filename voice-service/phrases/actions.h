// The actions that an application can handle, by their names on the wire.
#ifndef CORVIS_VOICE_SERVICE_PHRASES_ACTIONS_H_
#define CORVIS_VOICE_SERVICE_PHRASES_ACTIONS_H_

#include <string>
#include <string_view>
#include <vector>

namespace corvis::voice {

constexpr std::string_view kActionPrefix = "ACTION_";
constexpr const char* kRequestAppContext = "ACTION_REQUEST_APP_CONTEXT";
constexpr const char* kRequestContentContext = "ACTION_REQUEST_CONTENT_CONTEXT";
constexpr const char* kItemSelection = "ACTION_ITEM_SELECTION";
constexpr const char* kTitleSelection = "ACTION_TITLE_SELECTION";

struct Action {
  const char* name;
  // Whether its data is an encoded bundle, which reaches the page as an object's JSON text.
  bool takes_bundle;
  // The page's callback; null where the script API has a handler of its own and no callback.
  const char* callback;
};

const std::vector<Action>& Actions();
std::vector<std::string> ActionNames();

// Null for a name that is no action's.
const Action* FindAction(std::string_view name);

}  // namespace corvis::voice

#endif  // CORVIS_VOICE_SERVICE_PHRASES_ACTIONS_H_
