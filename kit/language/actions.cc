// The table of actions.
#include "language/actions.h"

#include <algorithm>

namespace corvis::kit {

const std::vector<ActionInfo>& Actions() {
  static const std::vector<ActionInfo> kActions = {
      {"ACTION_REQUEST_APP_CONTEXT", "onupdatestate", false},
      {"ACTION_NAVIGATION", "onnavigation", false},
      {"ACTION_SEARCH", "onsearch", true},
      {"ACTION_PLAY", "onplay", false},
      {"ACTION_STOP", "onstop", false},
      {"ACTION_PAUSE", "onpause", false},
      {"ACTION_EXIT", "onexit", false},
      {"ACTION_SELECTION", "onselection", false},
      {"ACTION_TITLE_SELECTION", "ontitleselection", false},
      {"ACTION_CUSTOM", "oncustom", true},
      {"ACTION_FAST_FORWARD", "onfastforward", false},
      {"ACTION_REWIND", "onrewind", false},
      {"ACTION_DEFAULT_SEARCH", "ondefaultsearch", true},
      {"ACTION_SEARCH_COLLECTION", "onsearchcollection", true},
      {"ACTION_CHANGE_APP_STATE", "onchangeappstate", false},
      {"ACTION_MEDIA_TRACK_PREVIOUS", "onchangeprevioustrack", false},
      {"ACTION_MEDIA_TRACK_NEXT", "onchangenexttrack", false},
      {"ACTION_MEDIA_RESTART", "onrestart", false},
      {"ACTION_MEDIA_SKIP_BACKWARD", "onskipbackward", false},
      {"ACTION_MEDIA_SKIP_FORWARD", "onskipforward", false},
      {"ACTION_MEDIA_SET_PLAY_POSITION", "onsetplayposition", false},
      {"ACTION_MEDIA_SET_SUBTITLE", "onchangesubtitlemode", false},
      {"ACTION_MEDIA_SET_SHUFFLE", "onchangeshufflemode", false},
      {"ACTION_MEDIA_SET_SCREEN_FIT", "onchangescreenfitmode", false},
      {"ACTION_MEDIA_SET_ZOOM", "onzoom", false},
      {"ACTION_MEDIA_SET_ROTATE", "onrotate", false},
      {"ACTION_MEDIA_SET_360_MODE", "onchange360mode", false},
      {"ACTION_MEDIA_SET_REPEAT", "onchangerepeatmode", false},
      {"ACTION_MEDIA_CONTINUE_WATCHING", "oncontinuewatching", false},
      {"ACTION_REQUEST_CONTENT_CONTEXT", "onrequestcontentcontext", false},
      {"ACTION_ITEM_SELECTION", "", true},
      {"ACTION_ADDITION_TO_LIST", "onadditiontolist", false},
      {"ACTION_REMOVAL_FROM_LIST", "onremovalfromlist", false},
  };
  return kActions;
}

const ActionInfo* FindAction(std::string_view name) {
  const auto& actions = Actions();
  const auto found = std::find_if(actions.begin(), actions.end(),
                                  [name](const ActionInfo& info) { return info.name == name; });
  return found == actions.end() ? nullptr : &*found;
}

std::string DescribeData(const Command& command) {
  if (!command.is_bundle) return command.text;
  std::string text;
  for (const auto& [key, value] : command.entries) {
    if (!text.empty()) text += ' ';
    text.append(key).append("=");
    const bool is_plain = !value.empty() && value.find_first_of(" \"=\\") == std::string::npos;
    text.append(is_plain ? value : '"' + value + '"');
  }
  return text;
}

}  // namespace corvis::kit
