// The table of action names, and its lookup.
#include "voice-interaction/action_table.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "voice-interaction/module_log.h"

namespace extension::voice_interaction {

namespace {

// In the order of the enumeration: a name's index is its action. Few names have the same length, so comparing
// with all of them is faster than a tree.
constexpr std::string_view kActionNames[] = {
    "ACTION_REQUEST_APP_CONTEXT",
    "ACTION_NAVIGATION",
    "ACTION_SEARCH",
    "ACTION_PLAY",
    "ACTION_STOP",
    "ACTION_PAUSE",
    "ACTION_EXIT",
    "ACTION_SELECTION",
    "ACTION_TITLE_SELECTION",
    "ACTION_CUSTOM",
    "ACTION_FAST_FORWARD",
    "ACTION_REWIND",
    "ACTION_DEFAULT_SEARCH",
    "ACTION_SEARCH_COLLECTION",
    "ACTION_CHANGE_APP_STATE",
    "ACTION_MEDIA_TRACK_PREVIOUS",
    "ACTION_MEDIA_TRACK_NEXT",
    "ACTION_MEDIA_RESTART",
    "ACTION_MEDIA_SKIP_BACKWARD",
    "ACTION_MEDIA_SKIP_FORWARD",
    "ACTION_MEDIA_SET_PLAY_POSITION",
    "ACTION_MEDIA_SET_SUBTITLE",
    "ACTION_MEDIA_SET_SHUFFLE",
    "ACTION_MEDIA_SET_SCREEN_FIT",
    "ACTION_MEDIA_SET_ZOOM",
    "ACTION_MEDIA_SET_ROTATE",
    "ACTION_MEDIA_SET_360_MODE",
    "ACTION_MEDIA_SET_REPEAT",
    "ACTION_MEDIA_CONTINUE_WATCHING",
    "ACTION_REQUEST_CONTENT_CONTEXT",
    "ACTION_ITEM_SELECTION",
    "ACTION_ADDITION_TO_LIST",
    "ACTION_REMOVAL_FROM_LIST",
};
static_assert(std::size(kActionNames) == ACTION_UNKNOWN);

}  // namespace

VoiceInteractionAppAction GetActionFromCommand(const char* command) {
  if (command == nullptr) {
    MODULE_ERROR_F("%s", "no command");
    return ACTION_UNKNOWN;
  }
  const auto* const name =
      std::find(std::begin(kActionNames), std::end(kActionNames), std::string_view(command));
  const auto action = static_cast<VoiceInteractionAppAction>(name - std::begin(kActionNames));
  if (action == ACTION_UNKNOWN) MODULE_ERROR_F("%s", "map::at");
  return action;
}

bool IsSearchAction(const char* command) {
  switch (GetActionFromCommand(command)) {
    case ACTION_SEARCH:
    case ACTION_DEFAULT_SEARCH:
    case ACTION_SEARCH_COLLECTION:
      return true;
    default:
      return false;
  }
}

}  // namespace extension::voice_interaction
