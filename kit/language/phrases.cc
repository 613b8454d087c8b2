// The phrase table and its use.
#include "language/phrases.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "language/phrase_pattern.h"
#include "language/search_terms.h"
#include "language/spoken_number.h"
#include "language/suggestions.h"

namespace corvis::kit {

namespace {

constexpr PhraseRow kTable[] = {
    {"play [it|this|the movie|the film|the video|the show|the music]", "ACTION_PLAY", ""},
    {"(resume|continue) [it|this|the movie|the film|the video|the show|the music]", "ACTION_PLAY", ""},
    {"pause [it|this|the movie|the film|the video|the show|the music]", "ACTION_PAUSE", ""},
    {"stop [it|this|the movie|the film|the video|the show|the music]", "ACTION_STOP", ""},
    {"exit", "ACTION_EXIT", ""},
    {"(exit|close|leave|quit) [the|this] app", "ACTION_EXIT", ""},

    {"[go|move] left", "ACTION_NAVIGATION", "MoveLeftCommand"},
    {"[go|move] right", "ACTION_NAVIGATION", "MoveRightCommand"},
    {"[go|move] up", "ACTION_NAVIGATION", "MoveUpCommand"},
    {"[go|move] down", "ACTION_NAVIGATION", "MoveDownCommand"},
    {"[go to the] next page", "ACTION_NAVIGATION", "NextPageCommand"},
    {"[go to the] previous page", "ACTION_NAVIGATION", "PreviousPageCommand"},
    {"show [me] more", "ACTION_NAVIGATION", "ShowMore"},

    {"select [number|item] {number}", "ACTION_ITEM_SELECTION", "id={number}"},
    {"choose [number|item] {number}", "ACTION_SELECTION", "{number}"},
    {"choose [the] {place} [one|item]", "ACTION_SELECTION", "{place}"},
    {"open {title}", "ACTION_TITLE_SELECTION", "{title}"},

    {"search [the] collection for {words}", "ACTION_SEARCH_COLLECTION", "{terms}"},
    {"search [for] {words}", "ACTION_SEARCH", "{terms}"},
    {"find {words}", "ACTION_DEFAULT_SEARCH", "{terms}"},
    {"tell the app {words}", "ACTION_CUSTOM", "utterance={words}"},

    {"fast forward", "ACTION_FAST_FORWARD", ""},
    {"rewind", "ACTION_REWIND", ""},
    {"skip (forward|ahead) [by] {time}", "ACTION_MEDIA_SKIP_FORWARD", "{time}"},
    {"(skip|go) back[ward] [by] {time}", "ACTION_MEDIA_SKIP_BACKWARD", "{time}"},
    {"skip (forward|ahead)", "ACTION_MEDIA_SKIP_FORWARD", "10"},
    {"skip back[ward]", "ACTION_MEDIA_SKIP_BACKWARD", "10"},
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
    {"(360|three sixty) [mode] on", "ACTION_MEDIA_SET_360_MODE", "on"},
    {"turn on [the] (360|three sixty) mode", "ACTION_MEDIA_SET_360_MODE", "on"},
    {"(360|three sixty) [mode] off", "ACTION_MEDIA_SET_360_MODE", "off"},
    {"turn off [the] (360|three sixty) mode", "ACTION_MEDIA_SET_360_MODE", "off"},
    {"zoom in", "ACTION_MEDIA_SET_ZOOM", "in"},
    {"zoom out", "ACTION_MEDIA_SET_ZOOM", "out"},
    {"rotate [to the] left", "ACTION_MEDIA_SET_ROTATE", "Left"},
    {"rotate [to the] right", "ACTION_MEDIA_SET_ROTATE", "Right"},
    {"repeat off", "ACTION_MEDIA_SET_REPEAT", "off"},
    {"repeat [this] one", "ACTION_MEDIA_SET_REPEAT", "one"},
    {"repeat all", "ACTION_MEDIA_SET_REPEAT", "all"},

    {"add [this|it] to [my] bookmarks", "ACTION_ADDITION_TO_LIST", "BookMarks"},
    {"add [this|it] to [my] watch later", "ACTION_ADDITION_TO_LIST", "WatchLater"},
    {"bookmark (this|it)", "ACTION_ADDITION_TO_LIST", "BookMarks"},
    {"watch (this|it) later", "ACTION_ADDITION_TO_LIST", "WatchLater"},
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

// Longer phrases get no suggestion: they are pasted, not said.
constexpr size_t kLongestPhrase = 200;

struct KnownRow {
  const PhraseRow* row;
  std::vector<Wording> wordings;
};

// The table with its patterns written out.
const std::vector<KnownRow>& KnownRows() {
  static const std::vector<KnownRow> kRows = [] {
    std::vector<KnownRow> rows;
    for (const PhraseRow& row : PhraseTable()) rows.push_back({&row, WordingsOf(row.pattern)});
    return rows;
  }();
  return kRows;
}

// The tidy phrase without a "please" at its beginning or end.
std::string PlainRequest(std::string_view phrase) {
  constexpr std::string_view kPlease = "please";
  std::string said = TidyPhrase(phrase);
  const size_t first = said.find(' ');
  if (first == std::string::npos) return said;
  if (NormalisedPhrase(said.substr(0, first)) == kPlease) said.erase(0, first + 1);
  const size_t last = said.rfind(' ');
  if (last != std::string::npos && NormalisedPhrase(said.substr(last + 1)) == kPlease) said.resize(last);
  return TidyPhrase(said);
}

// What goes into the data for the words of a slot; nothing when they are no number or time, as they should
// be.
std::optional<std::string> ValueOf(const std::string& slot, std::string_view words) {
  if (slot != "number" && slot != "place" && slot != "time") return std::string(words);
  const std::string plain = NormalisedPhrase(words);
  const auto number = slot == "number"  ? SpokenNumber(plain)
                      : slot == "place" ? SpokenPlace(plain)
                                        : SpokenSeconds(plain);
  return number ? std::optional(std::to_string(*number)) : std::nullopt;
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

// A phrase that might have been meant. Suggestions that keep the words of the slot come first, then those
// with fewer mistakes.
struct Suggestion {
  bool is_example = false;
  size_t mistakes = 0;
  std::string text;
};

// The first words of what was said, up to `end`, as they are compared.
struct Beginning {
  size_t end = 0;
  std::string plain;
};

// Of the first word, the first two, and so on to the whole.
std::vector<Beginning> BeginningsOf(const std::string& said) {
  std::vector<Beginning> beginnings;
  for (size_t end = 0; end < said.size();) {
    end = std::min(said.find(' ', end + 1), said.size());
    beginnings.push_back({end, NormalisedPhrase(said.substr(0, end))});
  }
  return beginnings;
}

// As many words as the wording has before its slot, or all.
const Beginning& ComparedBeginning(const std::vector<Beginning>& beginnings, const Wording& wording) {
  const auto blanks = std::count(wording.before.begin(), wording.before.end(), ' ');
  const size_t last = beginnings.size() - 1;
  return beginnings[wording.slot.empty() ? last : std::min<size_t>(blanks, last)];
}

// Only the fixed words before the slot are compared; what stands in the slot is no mistake.
std::optional<Suggestion> SuggestionOf(const Wording& wording, const std::string& said,
                                       const std::vector<Beginning>& beginnings) {
  const auto& [beginning, plain] = ComparedBeginning(beginnings, wording);
  const auto mistakes = Mistakes(plain, wording.before);
  if (!mistakes) return {};
  Suggestion suggestion{false, *mistakes, wording.before + said.substr(beginning)};
  if (wording.slot.empty() || (beginning < said.size() && SlotWords(wording, suggestion.text) &&
                               (CommandOf(suggestion.text) || TitleToSelect(suggestion.text)))) {
    return suggestion;
  }
  suggestion.is_example = true;
  suggestion.text = wording.before + " " + SlotExample(wording.slot);
  if (!wording.behind.empty()) suggestion.text += " " + wording.behind;
  return suggestion;
}

}  // namespace

const std::vector<PhraseRow>& PhraseTable() {
  static const std::vector<PhraseRow> kRows(std::begin(kTable), std::end(kTable));
  return kRows;
}

std::optional<Command> CommandOf(std::string_view phrase) {
  const std::string said = PlainRequest(phrase);
  if (said.empty()) return {};
  for (const KnownRow& known : KnownRows()) {
    // A phrase may fit the pattern in several ways; the first whose slot can be read counts.
    for (const Wording& wording : known.wordings) {
      const auto words = SlotWords(wording, said);
      const auto value = words ? ValueOf(wording.slot, *words) : std::nullopt;
      if (value) return MakeCommand(*known.row, said, wording.slot, *value);
    }
  }
  return {};
}

std::optional<std::string> TitleToSelect(std::string_view phrase) {
  const std::string said = PlainRequest(phrase);
  const auto title = SlotWords({"select", "title", ""}, said);
  return title && !CommandOf(said) ? std::optional(std::string(*title)) : std::nullopt;
}

std::string SamplePhrase(std::string_view action) {
  for (const PhraseRow& row : PhraseTable()) {
    if (row.action == action) return SampleOfPattern(row.pattern);
  }
  return "";
}

std::string SimilarPhrase(std::string_view phrase) {
  const std::string said = PlainRequest(phrase);
  if (said.empty() || said.size() > kLongestPhrase) return "";
  const std::vector<Beginning> beginnings = BeginningsOf(said);
  std::optional<Suggestion> best;
  for (const KnownRow& known : KnownRows()) {
    for (const Wording& wording : known.wordings) {
      const auto suggestion = SuggestionOf(wording, said, beginnings);
      if (!suggestion) continue;
      const auto rank = [](const Suggestion& one) { return std::pair(one.is_example, one.mistakes); };
      if (!best || rank(*suggestion) < rank(*best)) best = suggestion;
    }
  }
  return best ? best->text : "";
}

}  // namespace corvis::kit
