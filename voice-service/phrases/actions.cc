// The table of actions.
#include "phrases/actions.h"

#include <algorithm>

namespace corvis::voice {

const std::vector<Action>& Actions() {
  static const std::vector<Action> actions = {
      {kRequestAppContext, false, "onupdatestate"},
      {"ACTION_NAVIGATION", false, "onnavigation"},
      {"ACTION_SEARCH", true, "onsearch"},
      {"ACTION_PLAY", false, "onplay"},
      {"ACTION_STOP", false, "onstop"},
      {"ACTION_PAUSE", false, "onpause"},
      {"ACTION_EXIT", false, "onexit"},
      {"ACTION_SELECTION", false, "onselection"},
      {kTitleSelection, false, "ontitleselection"},
      {"ACTION_CUSTOM", true, "oncustom"},
      {"ACTION_FAST_FORWARD", false, "onfastforward"},
      {"ACTION_REWIND", false, "onrewind"},
      {"ACTION_DEFAULT_SEARCH", true, "ondefaultsearch"},
      {"ACTION_SEARCH_COLLECTION", true, "onsearchcollection"},
      {"ACTION_CHANGE_APP_STATE", false, "onchangeappstate"},
      {"ACTION_MEDIA_TRACK_PREVIOUS", false, "onchangeprevioustrack"},
      {"ACTION_MEDIA_TRACK_NEXT", false, "onchangenexttrack"},
      {"ACTION_MEDIA_RESTART", false, "onrestart"},
      {"ACTION_MEDIA_SKIP_BACKWARD", false, "onskipbackward"},
      {"ACTION_MEDIA_SKIP_FORWARD", false, "onskipforward"},
      {"ACTION_MEDIA_SET_PLAY_POSITION", false, "onsetplayposition"},
      {"ACTION_MEDIA_SET_SUBTITLE", false, "onchangesubtitlemode"},
      {"ACTION_MEDIA_SET_SHUFFLE", false, "onchangeshufflemode"},
      {"ACTION_MEDIA_SET_SCREEN_FIT", false, "onchangescreenfitmode"},
      {"ACTION_MEDIA_SET_ZOOM", false, "onzoom"},
      {"ACTION_MEDIA_SET_ROTATE", false, "onrotate"},
      {"ACTION_MEDIA_SET_360_MODE", false, "onchange360mode"},
      {"ACTION_MEDIA_SET_REPEAT", false, "onchangerepeatmode"},
      {"ACTION_MEDIA_CONTINUE_WATCHING", false, "oncontinuewatching"},
      {kRequestContentContext, false, "onrequestcontentcontext"},
      {kItemSelection, true, nullptr},
      {"ACTION_ADDITION_TO_LIST", false, "onadditiontolist"},
      {"ACTION_REMOVAL_FROM_LIST", false, "onremovalfromlist"},
  };
  return actions;
}

std::vector<std::string> ActionNames() {
  std::vector<std::string> names;
  for (const Action& action : Actions()) names.emplace_back(action.name);
  return names;
}

const Action* FindAction(std::string_view name) {
  const auto& actions = Actions();
  const auto found = std::find_if(actions.begin(), actions.end(),
                                  [&](const Action& action) { return name == action.name; });
  return found == actions.end() ? nullptr : &*found;
}

}  // namespace corvis::voice
