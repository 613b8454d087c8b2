// Raw commands: data that is a bundle, data that is text, and data that is neither.
#include "language/raw_command.h"

#include <gmock/gmock.h>

namespace corvis::kit {
namespace {

using testing::HasSubstr;

struct CommandRow {
  const char* line;
  const char* text;
  Entries entries;
};

TEST(RawCommand, OnlyPairsOfBundleActionsAreABundle) {
  const CommandRow rows[] = {
      {"ACTION_PLAY", "", {}},
      {"ACTION_PLAY  a=b \"c ", " a=b \"c ", {}},
      {"ACTION_TITLE_SELECTION \"The Sea\"", "\"The Sea\"", {}},
      {"ACTION_NEW a=b", "a=b", {}},
      {"ACTION_CUSTOM a=b", "", {{"a", "b"}}},
      {"ACTION_CUSTOM a=  b=\"x \\\" \\\\ = y\"  c=d=e", "", {{"a", ""}, {"b", "x \" \\ = y"}, {"c", "d=e"}}},
      {"ACTION_CUSTOM \"a=b\"", "a=b", {}},
      {"ACTION_CUSTOM \"say \\\"a\\\"\"", "say \"a\"", {}},
      {"ACTION_CUSTOM \"a\" and \"b\"", "\"a\" and \"b\"", {}},
      {"ACTION_SEARCH comedies from=1990", "comedies from=1990", {}},
      {"ACTION_CUSTOM a=\"b\"c", "a=\"b\"c", {}},
      {"ACTION_CUSTOM =b", "=b", {}},
      {"ACTION_ITEM_SELECTION {\"id\":\"a=b\"}", "{\"id\":\"a=b\"}", {}},
  };
  for (const CommandRow& row : rows) {
    const auto command = ParseRawCommand(row.line);
    ASSERT_TRUE(command) << row.line;
    EXPECT_EQ(command->entries, row.entries) << row.line;
    EXPECT_EQ(command->is_bundle, !row.entries.empty()) << row.line;
    EXPECT_EQ(command->is_bundle ? "" : command->text, row.text) << row.line;
  }
}

TEST(RawCommand, PairsThatCannotBeReadAreAnError) {
  for (const auto& [line, message] :
       {std::pair("ACTION_CUSTOM a=1 b=2 a=3", "Duplicate key a."),
        std::pair("ACTION_CUSTOM a=\"b c", "Missing closing quotation mark of a."),
        std::pair("ACTION_CUSTOM \"a=b\\\"", "Missing closing quotation mark.")}) {
    const auto command = ParseRawCommand(line);
    ASSERT_FALSE(command) << line;
    EXPECT_THAT(command.error().message, HasSubstr(message));
  }
}

// The prefix made any two short names alike.
TEST(RawCommand, SuggestsActionsByTheirOwnLetters) {
  for (const auto& [name, suggestion] :
       {std::pair("ACTION_FOO", ""), std::pair("ACTION_PUASE", " Did you mean \"ACTION_PAUSE\"?"),
        std::pair("ACTION_Play", " Did you mean \"ACTION_PLAY\"?"), std::pair("ACTION_", ""),
        std::pair("ACTION_MEDIA_SET_SUBTITLES", " Did you mean \"ACTION_MEDIA_SET_SUBTITLE\"?")}) {
    EXPECT_EQ(UnknownActionWarning(*ParseRawCommand(name)),
              "Unknown action " + std::string(name) + ". It is sent anyway." + suggestion);
  }
  EXPECT_EQ(UnknownActionWarning(*ParseRawCommand("ACTION_PLAY x")), "");
}

}  // namespace
}  // namespace corvis::kit
