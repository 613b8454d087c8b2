// From phrases to commands, and what is suggested for phrases that are none.
#include "language/phrasebook.h"

#include <gmock/gmock.h>

#include <set>

namespace corvis::kit {
namespace {

const Phrasebook& English() {
  static const Phrasebook kEnglish = Phrasebook::Open("en", {}).value();
  return kEnglish;
}

std::optional<Command> CommandOf(const std::string& phrase) {
  const auto understood = English().Understand(phrase);
  return understood ? std::optional(understood->command) : std::nullopt;
}

// "ACTION data", as a person reads it; without the ACTION_ that all have.
std::string Meaning(const std::string& phrase) {
  const auto command = CommandOf(phrase);
  return command ? command->action.substr(7) + "|" + DescribeData(*command) : "nothing";
}

struct PhraseRow {
  const char* phrase;
  const char* command;
};

constexpr PhraseRow kPhrases[] = {
    {"  Pause,  PLEASE! ", "PAUSE|"},
    {"please pause the movie", "PAUSE|"},
    {"resume the video", "PLAY|"},
    {"stop it", "STOP|"},
    {"exit the app", "EXIT|"},
    {"go left", "NAVIGATION|MoveLeftCommand"},
    {"RIGHT", "NAVIGATION|MoveRightCommand"},
    {"move up", "NAVIGATION|MoveUpCommand"},
    {"down", "NAVIGATION|MoveDownCommand"},
    {"next page", "NAVIGATION|NextPageCommand"},
    {"go to the previous page", "NAVIGATION|PreviousPageCommand"},
    {"show me more", "NAVIGATION|ShowMore"},
    {"select number twenty one", "ITEM_SELECTION|id=21"},
    {"choose 3", "SELECTION|3"},
    {"choose the third one", "SELECTION|3"},
    {"choose the 22nd item please", "SELECTION|22"},
    {"open The SEA", "TITLE_SELECTION|The SEA"},
    {"open \"What now?\"", "TITLE_SELECTION|What now?"},
    {"Open “If You Please” please", "TITLE_SELECTION|If You Please"},
    {"find Iron Rain", "DEFAULT_SEARCH|utterance=\"find Iron Rain\" title=\"Iron Rain\" raw=\"Iron Rain\""},
    {"search collection for songs",
     "SEARCH_COLLECTION|utterance=\"search collection for songs\" content_type=music raw=songs"},
    {"tell the app Hello There", "CUSTOM|utterance=\"Hello There\""},
    {"fast forward", "FAST_FORWARD|"},
    {"rewind", "REWIND|"},
    {"skip forward", "MEDIA_SKIP_FORWARD|10"},
    {"skip ahead by half a minute", "MEDIA_SKIP_FORWARD|30"},
    {"skip back", "MEDIA_SKIP_BACKWARD|10"},
    {"go back 1.5 minutes", "MEDIA_SKIP_BACKWARD|90"},
    {"jump to 1:02:03", "MEDIA_SET_PLAY_POSITION|3723"},
    {"play from an hour and a half", "MEDIA_SET_PLAY_POSITION|5400"},
    {"start over", "MEDIA_RESTART|"},
    {"next episode", "MEDIA_TRACK_NEXT|"},
    {"previous song", "MEDIA_TRACK_PREVIOUS|"},
    {"continue watching", "MEDIA_CONTINUE_WATCHING|"},
    {"continue watching Iron Rain", "MEDIA_CONTINUE_WATCHING|Iron Rain"},
    {"turn on the subtitles", "MEDIA_SET_SUBTITLE|on"},
    {"subtitles off", "MEDIA_SET_SUBTITLE|off"},
    {"shuffle", "MEDIA_SET_SHUFFLE|on"},
    {"fit to screen off", "MEDIA_SET_SCREEN_FIT|off"},
    {"three sixty mode on", "MEDIA_SET_360_MODE|on"},
    {"turn off 360 mode", "MEDIA_SET_360_MODE|off"},
    {"zoom out", "MEDIA_SET_ZOOM|out"},
    {"rotate to the left", "MEDIA_SET_ROTATE|Left"},
    {"repeat this one", "MEDIA_SET_REPEAT|one"},
    {"bookmark this", "ADDITION_TO_LIST|BookMarks"},
    {"watch this later", "ADDITION_TO_LIST|WatchLater"},
    {"remove it from my watch later", "REMOVAL_FROM_LIST|WatchLater"},
    {"go to the home screen", "CHANGE_APP_STATE|Home"},
    {"show my lists", "CHANGE_APP_STATE|List"},
    {"where am i?", "REQUEST_APP_CONTEXT|"},
    {"what can I select", "REQUEST_CONTENT_CONTEXT|"},
    {"search for comedies", "SEARCH|utterance=\"search for comedies\" genre=comedy raw=comedies"},
    {"rotate the lot", "nothing"},
    {"skip forward a lot", "nothing"},
    {"please", "nothing"},
    {" .!? ", "nothing"},
};

TEST(Phrases, BecomeCommands) {
  for (const PhraseRow& row : kPhrases) EXPECT_EQ(Meaning(row.phrase), row.command) << row.phrase;
}

TEST(Phrases, ReachEveryActionAndNoOther) {
  std::set<std::string> reached;
  for (const PhraseRow& row : kPhrases) {
    if (const auto command = CommandOf(row.phrase)) reached.insert(command->action);
  }
  std::set<std::string> all;
  for (const ActionInfo& action : Actions()) all.emplace(action.name);
  EXPECT_EQ(all.size(), 33U);
  EXPECT_EQ(reached, all);
}

// What help offers must be understood as the action that it is offered for.
TEST(Phrases, OfSampleAndTableAgree) {
  for (const ActionInfo& action : Actions()) {
    const auto command = CommandOf(English().SampleFor(action.name));
    ASSERT_TRUE(command) << action.name;
    EXPECT_EQ(command->action, action.name);
  }
}

TEST(Phrases, SearchTermsAreTakenApart) {
  const PhraseRow rows[] = {
      {"comedies with Jane Doe from 1990 to 2000", "genre=comedy cast=\"Jane Doe\" from=1990 to=2000"},
      {"science fiction from the 90s", "genre=\"science fiction\" from=1990 to=1999"},
      {"comedies after 1990", "genre=comedy from=1990"},
      {"movies before 2000", "content_type=movie to=2000"},
      {"Dramas between 1990 and 2000", "genre=drama from=1990 to=2000"},
      {"songs from the 2010s to 2020", "content_type=music from=2010 to=2020"},
      {"films since May 1990", "content_type=movie from=\"May 1990\""},
      {"films until 1990-05-17", "content_type=movie to=1990-05-17"},
      {"westerns in 1968", "genre=western from=1968 to=1968"},
      {"shows after the 80s", "content_type=show from=1989"},
      {"movies from France", "title=\"from France\" content_type=movie"},
      {"How to Fly", "title=\"How to Fly\""},
      {"Back to 1955", "title=\"Back to 1955\""},
      {"films with Jane Doe after 1990 comedies",
       "genre=comedy cast=\"Jane Doe\" content_type=movie from=1990"},
      {"Summer of 1942", "title=\"Summer of 1942\""},
      {"between 1990 and now", "title=\"between 1990 and now\""},
      {"some of the movies", "content_type=movie"},
      {"films called From Dusk to Dawn, starring J. Doe",
       "title=\"From Dusk to Dawn\" cast=\"J. Doe\" content_type=movie"},
  };
  for (const PhraseRow& row : rows) {
    auto command = CommandOf(std::string("search for ") + row.phrase);
    ASSERT_TRUE(command) << row.phrase;
    EXPECT_EQ(command->entries.front().second, std::string("search for ") + row.phrase);
    EXPECT_EQ(command->entries.back(), std::pair(std::string("raw"), std::string(row.phrase)));
    command->entries.erase(command->entries.begin());
    command->entries.pop_back();
    EXPECT_EQ(DescribeData(*command), row.command) << row.phrase;
  }
}

// A quotation mark in a search term makes the page get no terms at all.
TEST(Phrases, AnUtteranceHasNoQuotationMarks) {
  const auto command = CommandOf("search for \"comedies\"");
  ASSERT_TRUE(command);
  EXPECT_EQ(DescribeData(*command), "utterance=\"search for comedies\" genre=comedy raw=comedies");
}

TEST(Phrases, SelectingWaitsForTheItem) {
  for (const auto& [phrase, title, place] : {std::tuple("Please select \"The SEA\"", "The SEA", 0L),
                                             std::tuple("select the second one", "", 2L)}) {
    auto understood = English().Understand(phrase);
    ASSERT_TRUE(understood && understood->item) << phrase;
    EXPECT_EQ(understood->item->title, title);
    EXPECT_EQ(understood->item->place, place);
    understood->SetItem(7);
    EXPECT_EQ(DescribeData(understood->command), "id=7");
  }
  EXPECT_FALSE(English().Understand("select item 3")->item);
}

TEST(Phrases, SuggestWhatWasMeant) {
  const PhraseRow rows[] = {
      {"serch for Comedies", "search for Comedies"},
      {"opne The Sea", "open The Sea"},
      {"selct The Sea", "select The Sea"},
      {"puase", "pause"},
      {"skip foward 5 minutes", "skip forward 5 minutes"},
      {"skip forward bananas", "skip forward 90 seconds"},
      {"go to the home scren", "go to the home screen"},
      {"please trun off the subtitles", "turn off the subtitles"},
      {"good morning", ""},
      {"x", ""},
  };
  for (const PhraseRow& row : rows) EXPECT_EQ(English().Suggest(row.phrase), row.command) << row.phrase;
}

}  // namespace
}  // namespace corvis::kit
