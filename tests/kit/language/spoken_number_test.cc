// Numbers, places and times in words.
#include "language/spoken_number.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace corvis::kit {
namespace {

constexpr long kNone = -1;

// What different words mean.
using Meanings = std::vector<std::pair<long, std::vector<const char*>>>;

void ExpectMeanings(std::optional<long> (*read)(const std::string& words), const Meanings& meanings) {
  for (const auto& [number, wordings] : meanings) {
    for (const char* words : wordings) EXPECT_EQ(read(words).value_or(kNone), number) << words;
  }
}

TEST(SpokenNumber, Counts) {
  ExpectMeanings(SpokenNumber,
                 {{0, {"0", "zero"}},
                  {21, {"21", "twenty one", "twenty-one"}},
                  {100, {"a hundred", "one hundred"}},
                  {232, {"two hundred thirty two", "two hundred and thirty two"}},
                  {1000000, {"1000000"}},
                  {kNone, {"", "1000001", "99999999999999999999", "-1", "3x", "hundred"}},
                  {kNone, {"twenty eleven", "thirteen one", "ten hundred", "one hundred and"}}});
}

TEST(SpokenNumber, PlacesCountFromOne) {
  ExpectMeanings(SpokenPlace,
                 {{1, {"first", "1st"}}, {12, {"twelfth"}}, {22, {"22nd"}}, {kNone, {"th", "three", ""}}});
}

TEST(SpokenNumber, Seconds) {
  ExpectMeanings(
      SpokenSeconds,
      {{90, {"90", "90 seconds", "1:30", "1.5 minutes", "one and a half minutes", "a minute and a half"}},
       {120, {"two minutes", "one hundred and twenty seconds"}},
       {1800, {"half an hour", "30 min"}},
       {3723, {"1:02:03", "1 hour 2 minutes and 3 seconds"}},
       {8100, {"2.25 hours"}},
       {kNone, {"1:60", "1:", "1:2:3:4", "1:00:00:00:00:00:00:00:00:00:00:00:00:00", "1.x minutes"}},
       {kNone, {"", "home", "minutes", "5 minutes 3", "a half"}}});
}

}  // namespace
}  // namespace corvis::kit
