// What Tab inserts, and which words it lists.
#include "cli/completion.h"

#include <gmock/gmock.h>

namespace corvis::kit {

namespace {

TEST(Completion, InsertsWhatIsCertain) {
  const std::vector<std::string> words = {"play", "pause", "play from {time}", "quit"};
  const struct {
    const char* typed;
    const char* insertion;
    std::vector<std::string> words;
  } rows[] = {
      {"q", "uit ", {"quit"}},
      {"quit", " ", {"quit"}},
      {"pl", "ay", {"play", "play from {time}"}},
      {"play", "", {"play", "play from {time}"}},
      {"p", "", {"play", "pause", "play from {time}"}},
      {"x", "", {}},
      {"quits", "", {}},
  };
  for (const auto& row : rows) {
    const Completion completion = Complete(row.typed, words);
    EXPECT_EQ(completion.insertion, row.insertion) << row.typed;
    EXPECT_EQ(completion.words, row.words) << row.typed;
  }
}

}  // namespace

}  // namespace corvis::kit
