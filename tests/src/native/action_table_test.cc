// Names to actions: exact, complete, and every miss logged once.
#include "voice-interaction/action_table.h"

#include "library_fixture.h"

namespace {

using namespace extension::voice_interaction;

TEST(ActionTable, FindsExactNamesOnly) {
  const struct {
    const char* command;
    VoiceInteractionAppAction action;
    bool is_search;
  } kRows[] = {{"ACTION_REQUEST_APP_CONTEXT", VoiceInteractionAppAction(0), false},
               {"ACTION_SEARCH", VoiceInteractionAppAction(2), true},
               {"ACTION_PLAY", VoiceInteractionAppAction(3), false},
               {"ACTION_DEFAULT_SEARCH", VoiceInteractionAppAction(12), true},
               {"ACTION_SEARCH_COLLECTION", VoiceInteractionAppAction(13), true},
               {"ACTION_ITEM_SELECTION", VoiceInteractionAppAction(30), false},
               {"ACTION_REMOVAL_FROM_LIST", VoiceInteractionAppAction(32), false},
               {"ACTION_UNKNOWN", ACTION_UNKNOWN, false},
               {"action_play", ACTION_UNKNOWN, false},
               {"ACTION_PLAY ", ACTION_UNKNOWN, false},
               {"", ACTION_UNKNOWN, false},
               {nullptr, ACTION_UNKNOWN, false}};
  for (const auto& row : kRows) {
    fake::Platform::Reset();
    EXPECT_EQ(GetActionFromCommand(row.command), row.action);
    EXPECT_EQ(IsSearchAction(row.command), row.is_search);
    EXPECT_EQ(fake::Platform::Get().log.size(), row.action == ACTION_UNKNOWN ? 2U : 0U);
  }
}

}  // namespace
