// Phrases that get into each other's way.
#include <gmock/gmock.h>

#include "language/phrasebook.h"

namespace corvis::kit {
namespace {

class BuiltIn : public testing::TestWithParam<std::string> {};

TEST_P(BuiltIn, NoPhraseIsInAnothersWay) {
  const auto book = Phrasebook::Open(GetParam(), {});
  ASSERT_TRUE(book) << book.error().message;
  for (const PhraseMistake& mistake : book->Check()) ADD_FAILURE() << Describe(mistake);
}

INSTANTIATE_TEST_SUITE_P(Languages, BuiltIn, testing::ValuesIn(BuiltInLanguages()),
                         [](const auto& language) { return language.param; });

}  // namespace
}  // namespace corvis::kit
