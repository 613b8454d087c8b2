// The voice actions and their names. Processes, and script and native code, always exchange an action's name;
// the numbers are used in native code only.
#ifndef CORVIS_VOICE_INTERACTION_ACTION_TABLE_H_
#define CORVIS_VOICE_INTERACTION_ACTION_TABLE_H_

namespace extension::voice_interaction {

enum VoiceInteractionAppAction {
  ACTION_REQUEST_APP_CONTEXT = 0,
  ACTION_NAVIGATION,
  ACTION_SEARCH,
  ACTION_PLAY,
  ACTION_STOP,
  ACTION_PAUSE,
  ACTION_EXIT,
  ACTION_SELECTION,
  ACTION_TITLE_SELECTION,
  ACTION_CUSTOM,
  ACTION_FAST_FORWARD,
  ACTION_REWIND,
  ACTION_DEFAULT_SEARCH,
  ACTION_SEARCH_COLLECTION,
  ACTION_CHANGE_APP_STATE,
  ACTION_MEDIA_TRACK_PREVIOUS,
  ACTION_MEDIA_TRACK_NEXT,
  ACTION_MEDIA_RESTART,
  ACTION_MEDIA_SKIP_BACKWARD,
  ACTION_MEDIA_SKIP_FORWARD,
  ACTION_MEDIA_SET_PLAY_POSITION,
  ACTION_MEDIA_SET_SUBTITLE,
  ACTION_MEDIA_SET_SHUFFLE,
  ACTION_MEDIA_SET_SCREEN_FIT,
  ACTION_MEDIA_SET_ZOOM,
  ACTION_MEDIA_SET_ROTATE,
  ACTION_MEDIA_SET_360_MODE,
  ACTION_MEDIA_SET_REPEAT,
  ACTION_MEDIA_CONTINUE_WATCHING,
  ACTION_REQUEST_CONTENT_CONTEXT,
  ACTION_ITEM_SELECTION,
  ACTION_ADDITION_TO_LIST,
  ACTION_REMOVAL_FROM_LIST,
  // No name; the result of every failed lookup.
  ACTION_UNKNOWN,
};

// The action whose name is exactly `command` (case-sensitive, not trimmed). Otherwise logs an error and
// returns ACTION_UNKNOWN. `command` may be null.
VoiceInteractionAppAction GetActionFromCommand(const char* command);

// Whether `command` names one of the three search actions, whose data becomes a search term.
bool IsSearchAction(const char* command);

}  // namespace extension::voice_interaction

#endif  // CORVIS_VOICE_INTERACTION_ACTION_TABLE_H_
