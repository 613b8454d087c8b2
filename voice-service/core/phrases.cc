// The phrase table and its use.
#include "core/phrases.h"

#include <algorithm>
#include <cstring>

#include "core/did_you_mean.h"
#include "core/phrase_pattern.h"
#include "core/search_terms.h"
#include "core/spoken_number.h"

namespace corvis::voice {

const std::vector<PhraseRow>& PhraseTable() {
  static const std::vector<PhraseRow> kTable = {
      {"play [it]", "ACTION_PLAY", ""},
      {"(resume|continue)", "ACTION_PLAY", ""},
      {"pause [it]", "ACTION_PAUSE", ""},
      {"stop [it]", "ACTION_STOP", ""},
      {"(exit|close the app|leave the app)", "ACTION_EXIT", ""},

      {"[go|move] left", "ACTION_NAVIGATION", "MoveLeftCommand"},
      {"[go|move] right", "ACTION_NAVIGATION", "MoveRightCommand"},
      {"[go|move] up", "ACTION_NAVIGATION", "MoveUpCommand"},
      {"[go|move] down", "ACTION_NAVIGATION", "MoveDownCommand"},
      {"[go to the] next page", "ACTION_NAVIGATION", "NextPageCommand"},
      {"[go to the] previous page", "ACTION_NAVIGATION", "PreviousPageCommand"},
      {"show [me] more", "ACTION_NAVIGATION", "ShowMore"},

      {"select [number|item] {number}", "ACTION_ITEM_SELECTION", "id={number}"},
      {"choose [number|item] {number}", "ACTION_SELECTION", "{number}"},
      {"open {title}", "ACTION_TITLE_SELECTION", "{title}"},

      {"search [the] collection for {words}", "ACTION_SEARCH_COLLECTION", "{terms}"},
      {"search [for] {words}", "ACTION_SEARCH", "{terms}"},
      {"find {words}", "ACTION_DEFAULT_SEARCH", "{terms}"},
      {"tell the app {words}", "ACTION_CUSTOM", "utterance={words}"},

      {"fast forward", "ACTION_FAST_FORWARD", ""},
      {"rewind", "ACTION_REWIND", ""},
      {"skip (forward|ahead) [by] {time}", "ACTION_MEDIA_SKIP_FORWARD", "{time}"},
      {"(skip|go) back[ward] [by] {time}", "ACTION_MEDIA_SKIP_BACKWARD", "{time}"},
      {"(go|jump) to {time}", "ACTION_MEDIA_SET_PLAY_POSITION", "{time}"},
      {"play from {time}", "ACTION_MEDIA_SET_PLAY_POSITION", "{time}"},
      {"(start over|play from the beginning)", "ACTION_MEDIA_RESTART", ""},
      {"next (track|episode|song|video)", "ACTION_MEDIA_TRACK_NEXT", ""},
      {"previous (track|episode|song|video)", "ACTION_MEDIA_TRACK_PREVIOUS", ""},
      {"continue watching [{title}]", "ACTION_MEDIA_CONTINUE_WATCHING", "{title}"},

      {"[turn] subtitles on", "ACTION_MEDIA_SET_SUBTITLE", "on"},
      {"turn on [the] subtitles", "ACTION_MEDIA_SET_SUBTITLE", "on"},
      {"[turn] subtitles off", "ACTION_MEDIA_SET_SUBTITLE", "off"},
      {"turn off [the] subtitles", "ACTION_MEDIA_SET_SUBTITLE", "off"},
      {"shuffle [on]", "ACTION_MEDIA_SET_SHUFFLE", "on"},
      {"shuffle off", "ACTION_MEDIA_SET_SHUFFLE", "off"},
      {"(screen fit|fit to screen) [on]", "ACTION_MEDIA_SET_SCREEN_FIT", "on"},
      {"(screen fit|fit to screen) off", "ACTION_MEDIA_SET_SCREEN_FIT", "off"},
      {"360 [mode] on", "ACTION_MEDIA_SET_360_MODE", "on"},
      {"360 [mode] off", "ACTION_MEDIA_SET_360_MODE", "off"},
      {"zoom in", "ACTION_MEDIA_SET_ZOOM", "in"},
      {"zoom out", "ACTION_MEDIA_SET_ZOOM", "out"},
      {"rotate [to the] left", "ACTION_MEDIA_SET_ROTATE", "Left"},
      {"rotate [to the] right", "ACTION_MEDIA_SET_ROTATE", "Right"},
      {"repeat off", "ACTION_MEDIA_SET_REPEAT", "off"},
      {"repeat [this] one", "ACTION_MEDIA_SET_REPEAT", "one"},
      {"repeat all", "ACTION_MEDIA_SET_REPEAT", "all"},

      {"add [this|it] to [my] bookmarks", "ACTION_ADDITION_TO_LIST", "BookMarks"},
      {"add [this|it] to [my] watch later", "ACTION_ADDITION_TO_LIST", "WatchLater"},
      {"remove [this|it] from [my] bookmarks", "ACTION_REMOVAL_FROM_LIST", "BookMarks"},
      {"remove [this|it] from [my] watch later", "ACTION_REMOVAL_FROM_LIST", "WatchLater"},

      {"(show|go) [to] [the] home [screen]", "ACTION_CHANGE_APP_STATE", "Home"},
      {"(show|go) [to] [the] player", "ACTION_CHANGE_APP_STATE", "Player"},
      {"(show|go) [to] [the|my] lists", "ACTION_CHANGE_APP_STATE", "List"},
      {"(show|go) [to] [the] settings", "ACTION_CHANGE_APP_STATE", "Setting"},
      {"(show|go) [to] [the] search", "ACTION_CHANGE_APP_STATE", "Search"},
      {"where am i", "ACTION_REQUEST_APP_CONTEXT", ""},
      {"what can i select", "ACTION_REQUEST_CONTENT_CONTEXT", ""},
  };
  return kTable;
}

namespace {

bool IsFilled(const SlotValue& slot, std::string& value) {
  if (slot.name == "number") {
    const auto number = SpokenNumber(slot.words);
    if (number) value = std::to_string(*number);
    return number.has_value();
  }
  if (slot.name == "time") {
    const auto seconds = SpokenSeconds(slot.words);
    if (seconds) value = std::to_string(*seconds);
    return seconds.has_value();
  }
  value = slot.words;
  return true;
}

// `data` with the slot's value in place of {name}; every slot that stays empty goes.
std::string Fill(std::string data, const std::string& name, const std::string& value) {
  const std::string slot = "{" + name + "}";
  const size_t at = data.find(slot);
  if (at != std::string::npos) data.replace(at, slot.size(), value);
  return data;
}

Command MakeCommand(const PhraseRow& row, const std::string& phrase, const std::string& slot,
                    const std::string& value) {
  Command command;
  command.action = row.action;
  command.is_bundle = FindAction(row.action)->takes_bundle;
  const std::string data = row.data;
  if (!command.is_bundle) {
    command.text = slot.empty() ? Fill(data, "title", "") : Fill(data, slot, value);
  } else if (data == "{terms}") {
    command.entries = SearchTerms(phrase, value);
  } else {
    const size_t equals = data.find('=');
    command.entries = {{data.substr(0, equals), Fill(data.substr(equals + 1), slot, value)}};
  }
  return command;
}

}  // namespace

std::optional<Command> CommandOf(std::string_view phrase) {
  const std::string plain = NormalisedPhrase(phrase);
  if (plain.empty()) return {};
  for (const PhraseRow& row : PhraseTable()) {
    // A wording may fit the pattern in several ways; the first whose slot can be read counts.
    for (const SlotValue& slot : MatchPattern(row.pattern, plain)) {
      std::string value;
      if (IsFilled(slot, value)) return MakeCommand(row, plain, slot.name, value);
    }
  }
  return {};
}

std::string SamplePhrase(std::string_view action) {
  for (const PhraseRow& row : PhraseTable()) {
    if (row.action == action) return SampleOfPattern(row.pattern);
  }
  return "";
}

std::string SimilarPhrase(std::string_view phrase) {
  std::vector<std::string> samples;
  for (const PhraseRow& row : PhraseTable()) samples.push_back(SampleOfPattern(row.pattern));
  return ClosestTo(NormalisedPhrase(phrase), samples);
}

}  // namespace corvis::voice
