// Input of any length and bytes: nothing may crash, and nothing may take more than time in proportion.
#include <gtest/gtest.h>

#include <chrono>

#include "app/items.h"
#include "language/phrasebook.h"
#include "language/raw_command.h"
#include "script/script_reader.h"

namespace corvis::kit {
namespace {

constexpr size_t kMebibyte = size_t(1) << 20U;

// The unit over and over, up to a mebibyte.
std::string Repeated(const std::string& unit) {
  std::string text;
  while (text.size() + unit.size() <= kMebibyte) text += unit;
  return text;
}

TEST(Garbage, IsReadInProportionateTime) {
  const Phrasebook phrases = Phrasebook::English();
  std::string many_keys;
  for (int i = 0; many_keys.size() < kMebibyte; ++i) many_keys += "k" + std::to_string(i) + "=v ";
  const std::string texts[] = {
      Repeated("a"),     Repeated(" "),       Repeated("a "),   Repeated("\""),           Repeated("\\"),
      Repeated("="),     Repeated("a="),      Repeated("1:"),   Repeated("from "),        Repeated("and "),
      Repeated("1990 "), Repeated("please "), Repeated("\xff"), Repeated("\xe2\x80\x9c"), Repeated({"\0", 1}),
      Repeated("[{"),    Repeated("1 hour "), many_keys};
  const auto begin = std::chrono::steady_clock::now();
  for (const std::string& text : texts) {
    for (const char* start :
         {"", "search for ", "find between ", "open \"", "go to ", "select ", "please "}) {
      const std::string phrase = start + text;
      phrases.Understand(phrase);
      phrases.Suggest(phrase);
    }
    for (const char* start : {"ACTION_CUSTOM ", "ACTION_CUSTOM \"", "ACTION_", "ACTION_SEARCH a=\""}) {
      if (const auto command = ParseRawCommand(start + text)) UnknownActionWarning(*command);
    }
    for (const char* start : {"", "say ", "say \"", "send ", "send ACTION_CUSTOM ", "inject ", "inject a=\"",
                              "say pause\nexpect json ", "say pause\nexpect matches /",
                              "say pause\nexpect one of ", "privileges ", "item ", "wait "}) {
      const VoiceScript script = ParseVoiceScript(start + text, "a.voice", SpokenLanguage());
      EXPECT_LE(script.tests.size() + script.errors.size(), 2U);
    }
    ReadItems(text);
  }
  // A quadratic loop over any of them takes hours; all of them take a few seconds, with sanitizers more.
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::minutes(2));
}

}  // namespace
}  // namespace corvis::kit
