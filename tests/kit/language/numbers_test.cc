// Numbers, places and times in words.
#include <gtest/gtest.h>
#include <unicode/rbnf.h>

#include <set>

#include "language/phrasebook.h"

namespace corvis::kit {
namespace {

// Phrases that give the value of one slot.
Phrasebook WithSlots(const std::string& language) {
  const PhraseFile file{
      "slots",
      "[phrases]\nqqn {number} -> ACTION_SELECTION {number}\nqqp {place} -> ACTION_SELECTION {place}\n"
      "qqt {time} -> ACTION_SELECTION {time}\nqqd {date} -> ACTION_SELECTION {date.first}-{date.last}\n"};
  return Phrasebook::Open(language, {file}).value();
}

std::string ValueOf(const Phrasebook& book, const std::string& text) {
  const auto understood = book.Understand(text);
  return understood ? understood->command.text : "none";
}

struct NumberMeaning {
  const char* value;
  std::vector<const char*> wordings;
};

void ExpectMeanings(const std::string& slot, const std::vector<NumberMeaning>& meanings) {
  const Phrasebook book = WithSlots("en");
  for (const auto& [value, wordings] : meanings) {
    for (const char* words : wordings) EXPECT_EQ(ValueOf(book, slot + " " + words), value) << words;
  }
}

TEST(Numbers, Count) {
  ExpectMeanings("qqn",
                 {{"0", {"0", "zero"}},
                  {"21", {"21", "twenty one", "Twenty-One", "２１"}},
                  {"100", {"a hundred", "one hundred"}},
                  {"232", {"two hundred thirty two", "two hundred and thirty-two"}},
                  {"1000000", {"1000000"}},
                  {"none", {"", "1000001", "99999999999999999999", "3x", "hundred", "1 0"}},
                  {"none", {"twenty eleven", "thirteen one", "ten hundred", "one hundred and", "1.5"}}});
}

TEST(Numbers, PlacesCountFromOne) {
  ExpectMeanings("qqp", {{"1", {"first", "1st"}},
                         {"12", {"twelfth"}},
                         {"22", {"22nd", "twenty-second"}},
                         {"none", {"th", "three", ""}}});
}

TEST(Numbers, TimesAreSeconds) {
  ExpectMeanings(
      "qqt", {{"90",
               {"90", "90 seconds", "1:30", "1.5 minutes", "one and a half minutes", "a minute and a half",
                "1 minute 30"}},
              {"120", {"two minutes", "one hundred and twenty seconds", "minute two"}},
              {"1800", {"half an hour", "30 min", "30min"}},
              {"3723", {"1:02:03", "1 hour 2 minutes and 3 seconds"}},
              {"4800", {"one hour twenty", "an hour and twenty minutes"}},
              {"8100", {"2.25 hours", "2 hours and a quarter"}},
              {"none", {"1:60", "1:2:3:4", "1:00:00:00:00:00:00:00:00:00:00:00:00:00", "1.x minutes"}},
              {"none", {"", "home", "minutes", "5 minutes 3", "a half", "1 minute 2 minutes"}}});
}

TEST(Numbers, DatesHaveAFirstAndALastYear) {
  ExpectMeanings("qqd", {{"1990-1990", {"1990", "the year 1990"}},
                         {"1990-1999", {"the 90s", "1990s", "the nineties"}},
                         {"2010-2019", {"10s"}},
                         {"May 1990-May 1990", {"May 1990", "may of 1990"}},
                         {"17 May 1990-17 May 1990", {"17 May 1990"}},
                         {"1990-05-17-1990-05-17", {"1990-05-17"}},
                         {"none", {"90", "Mai 1990", "32 May 1990"}}});
}

class Spelled : public testing::TestWithParam<std::string> {
 protected:
  // All spellings of a number by the rule sets whose name has one of these in it.
  std::set<std::string> Spellings(int number, const std::vector<const char*>& names) {
    std::set<std::string> spellings;
    for (int32_t i = 0; i < format_.getNumberOfRuleSetNames(); ++i) {
      const icu::UnicodeString name = format_.getRuleSetName(i);
      for (const char* part : names) {
        if (name.indexOf(part) < 0 || name.indexOf("-year") >= 0) continue;
        icu::UnicodeString text;
        icu::FieldPosition position;
        std::string utf8;
        spellings.insert(format_.format(number, name, text, position, error_).toUTF8String(utf8));
      }
    }
    return spellings;
  }

  UErrorCode error_ = U_ZERO_ERROR;
  icu::RuleBasedNumberFormat format_{icu::URBNF_SPELLOUT, icu::Locale(GetParam().c_str()), error_};
};

TEST_P(Spelled, NumbersAreUnderstood) {
  const Phrasebook book = WithSlots(GetParam());
  for (int number = 0; number < 1000; ++number) {
    for (const std::string& spelling : Spellings(number, {"numbering", "cardinal"})) {
      ASSERT_EQ(ValueOf(book, "qqn " + spelling), std::to_string(number)) << spelling;
    }
  }
}

TEST_P(Spelled, PlacesAreUnderstood) {
  const Phrasebook book = WithSlots(GetParam());
  for (int number = 1; number < 100; ++number) {
    for (const std::string& spelling : Spellings(number, {"ordinal"})) {
      ASSERT_EQ(ValueOf(book, "qqp " + spelling), std::to_string(number)) << spelling;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Languages, Spelled, testing::ValuesIn(BuiltInLanguages()),
                         [](const auto& language) { return language.param; });

}  // namespace
}  // namespace corvis::kit
