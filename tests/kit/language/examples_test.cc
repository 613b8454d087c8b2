// What viewers say in each language, and what it becomes: the tables in testing/spoken/.
#include <gmock/gmock.h>

#include <fstream>
#include <set>

#include "language/phrasebook.h"

namespace corvis::kit {
namespace {

// "ACTION data" as the tables have it: of search terms, "utterance" and "raw" are left out.
std::string Summary(const Phrasebook& book, const std::string& spoken) {
  auto understood = book.Understand(spoken);
  if (!understood) return "nothing";
  Command& command = understood->command;
  constexpr size_t kPrefix = 7;
  std::string text = command.action.substr(kPrefix);
  if (understood->item) {
    const WantedItem& item = *understood->item;
    return text + (item.place > 0 ? " #" + std::to_string(item.place) : " \"" + item.title + "\"");
  }
  if (!command.entries.empty() && command.entries.back().first == "raw") {
    command.entries.erase(command.entries.begin());
    command.entries.pop_back();
  }
  const std::string data = DescribeData(command);
  return text + (data.empty() ? "" : " " + data);
}

struct Example {
  std::string spoken;
  std::string becomes;
};

std::vector<Example> ReadExamples(const std::string& language) {
  std::vector<Example> examples;
  std::ifstream file(std::string(SPOKEN_EXAMPLES) + "/" + language + ".txt");
  for (std::string line; std::getline(file, line);) {
    const size_t arrow = line.find(" -> ");
    if (line[0] != '#' && arrow != std::string::npos)
      examples.push_back({line.substr(0, arrow), line.substr(arrow + 4)});
  }
  return examples;
}

class Examples : public testing::TestWithParam<std::string> {};

TEST_P(Examples, BecomeWhatTheySay) {
  const auto book = Phrasebook::Open(GetParam(), {});
  ASSERT_TRUE(book) << book.error().message;
  const std::vector<Example> examples = ReadExamples(GetParam());
  EXPECT_GE(examples.size(), 150U);
  std::set<std::string> actions;
  for (const auto& [spoken, becomes] : examples) {
    EXPECT_EQ(Summary(*book, spoken), becomes) << spoken;
    if (becomes != "nothing") actions.insert(becomes.substr(0, becomes.find(' ')));
  }
  EXPECT_EQ(actions.size(), Actions().size()) << "every action";
}

INSTANTIATE_TEST_SUITE_P(Languages, Examples, testing::ValuesIn(BuiltInLanguages()),
                         [](const auto& language) { return language.param; });

}  // namespace
}  // namespace corvis::kit
