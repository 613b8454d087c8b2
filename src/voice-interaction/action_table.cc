// The table of action names, built while the library is loaded and never changed.
#include "voice-interaction/action_table.h"

#include <functional>
#include <map>
#include <string>

#include "voice-interaction/module_log.h"

namespace extension::voice_interaction {

namespace {

// std::less<> finds a C text without making a string of it.
using ActionTable = std::map<std::string, VoiceInteractionAppAction, std::less<>>;

#define ACTION(name) \
  { #name, name }
const ActionTable kActionTable = {
    ACTION(ACTION_REQUEST_APP_CONTEXT),
    ACTION(ACTION_NAVIGATION),
    ACTION(ACTION_SEARCH),
    ACTION(ACTION_PLAY),
    ACTION(ACTION_STOP),
    ACTION(ACTION_PAUSE),
    ACTION(ACTION_EXIT),
    ACTION(ACTION_SELECTION),
    ACTION(ACTION_TITLE_SELECTION),
    ACTION(ACTION_CUSTOM),
    ACTION(ACTION_FAST_FORWARD),
    ACTION(ACTION_REWIND),
    ACTION(ACTION_DEFAULT_SEARCH),
    ACTION(ACTION_SEARCH_COLLECTION),
    ACTION(ACTION_CHANGE_APP_STATE),
    ACTION(ACTION_MEDIA_TRACK_PREVIOUS),
    ACTION(ACTION_MEDIA_TRACK_NEXT),
    ACTION(ACTION_MEDIA_RESTART),
    ACTION(ACTION_MEDIA_SKIP_BACKWARD),
    ACTION(ACTION_MEDIA_SKIP_FORWARD),
    ACTION(ACTION_MEDIA_SET_PLAY_POSITION),
    ACTION(ACTION_MEDIA_SET_SUBTITLE),
    ACTION(ACTION_MEDIA_SET_SHUFFLE),
    ACTION(ACTION_MEDIA_SET_SCREEN_FIT),
    ACTION(ACTION_MEDIA_SET_ZOOM),
    ACTION(ACTION_MEDIA_SET_ROTATE),
    ACTION(ACTION_MEDIA_SET_360_MODE),
    ACTION(ACTION_MEDIA_SET_REPEAT),
    ACTION(ACTION_MEDIA_CONTINUE_WATCHING),
    ACTION(ACTION_REQUEST_CONTENT_CONTEXT),
    ACTION(ACTION_ITEM_SELECTION),
    ACTION(ACTION_ADDITION_TO_LIST),
    ACTION(ACTION_REMOVAL_FROM_LIST),
};
#undef ACTION

}  // namespace

VoiceInteractionAppAction GetActionFromCommand(const char* command) {
  if (command == nullptr) {
    MODULE_ERROR_F("%s", "no command");
    return ACTION_UNKNOWN;
  }
  const auto entry = kActionTable.find(command);
  if (entry == kActionTable.end()) {
    MODULE_ERROR_F("%s", "map::at");
    return ACTION_UNKNOWN;
  }
  return entry->second;
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
