// Phrase files: what is wrong in them, what they add, and what no file may do.
#include "language/phrase_file.h"

#include <gmock/gmock.h>

#include <chrono>

#include "language/phrasebook.h"

namespace corvis::kit {
namespace {

std::vector<std::string> MistakesIn(const std::string& text) {
  std::vector<PhraseMistake> mistakes;
  Phrasebook::Read({{"f", text}}, mistakes);
  std::vector<std::string> described;
  for (const PhraseMistake& mistake : mistakes) described.push_back(Describe(mistake));
  return described;
}

TEST(PhraseFile, MistakesAreFound) {
  const std::pair<const char*, const char*> rows[] = {
      {"langage en", "f:1:1: Expected \"language TAG NAME\" or a section, for example [phrases]."},
      {"\n[phrasse]\nx", "f:2:1: Unknown section [phrasse]. Did you mean \"phrases\"?"},
      {"[phrases]\nplay", "f:2:5: Expected -> and what the words mean."},
      {"[phrases]\nplay ->", "f:2:5: Expected -> and what the words mean."},
      {"[phrases]\n  (play|go -> ACTION_PLAY", "f:2:11: Missing )."},
      {"[phrases]\nplay) -> ACTION_PLAY", "f:2:5: Unexpected )."},
      {"[phrases]\na [] b -> ACTION_PLAY", "f:2:4: Expected words."},
      {"[phrases]\ngo {time -> ACTION_PLAY", "f:2:4: Missing }."},
      {"[phrases]\ngo {} -> ACTION_PLAY", "f:2:4: Expected the name of a slot, for example {title}."},
      {"[phrases]\ngo {t:tiem} -> ACTION_PLAY",
       "f:2:4: Unknown kind of slot \"tiem\". Did you mean \"time\"?"},
      {"[phrases]\ngo {9-1} -> ACTION_PLAY", "f:2:4: Expected a range of numbers, for example {1-99}."},
      {"[phrases]\n<x> -> ACTION_PLAY", "f:2:1: Unknown piece <x>. Define it in [pieces], above its use."},
      {"[phrases]\n[a] -> ACTION_PLAY", "f:2:1: The pattern has no word that has to be said."},
      {"[phrases]\n... -> ACTION_PLAY", "f:2:1: Expected a word instead of \"...\"."},
      {"[phrases]\nplay -> ACTION_PLYA", "f:2:9: Unknown action ACTION_PLYA. Did you mean \"ACTION_PLAY\"?"},
      {"[phrases]\nplay {title} -> ACTION_PLAY {titel}",
       "f:2:29: The pattern has no slot {titel}. Did you mean \"title\"?"},
      {"[phrases]\nplay -> ACTION_CUSTOM a=1 a=2",
       "f:2:9: Duplicate key a. To send all of the data as one text, put it in quotation marks."},
      {"[pieces]\nx -> y", "f:2:1: Expected the name of a piece, for example <movie>."},
      {"[pieces]\n<x> -> (y", "f:2:10: Missing )."},
      {"[numbers]\nten -> x", "f:2:8: Expected a number."},
      {"[numbers]\na {1-9} b -> 1",
       "f:2:1: Expected a slot for a number at the beginning or at the end, for example {1-99}."},
      {"[numbers]\n{1-9} and {1-9} -> 1", "f:2:1: Expected words and at most one slot."},
      {"[time]\n{t:time} later -> 1",
       "f:2:1: The slot {t} must be one for a number, an amount, a place, a month, a year or a decade here."},
      {"[time]\nsoon -> 60 {s}", "f:2:12: The pattern has no slot {s}."},
      {"[time]\nsoon -> sixty", "f:2:9: Expected a sum, for example 60 {minutes} + 30."},
      {"[search]\nfunny -> gerne=comedy", "f:2:10: Unknown search term \"gerne\". Did you mean \"genre\"?"},
      {"[search]\nfunny -> comedy", "f:2:10: Expected search terms, for example genre=comedy."},
      {"[search]\nby {name} now -> cast={name}\nx {a} y -> cast={a}",
       "f:2:1: The slot {name} must be at an end of the pattern."},
      {"[examples]\ntime -> 1 s", "f:2:1: Expected a slot, for example {time}."},
  };
  for (const auto& [text, mistake] : rows) {
    const auto mistakes = MistakesIn(text);
    ASSERT_FALSE(mistakes.empty()) << text;
    EXPECT_EQ(mistakes[0], mistake) << text;
  }
  EXPECT_THAT(MistakesIn("\xEF\xBB\xBFlanguage xx X\r\n# note\r\n\r\n[phrases]\r\ngo → ACTION_PLAY\r\n"),
              testing::IsEmpty());
  EXPECT_EQ(MistakesIn("[phrases]\na\nb\nc -> ACTION_X\n").size(), 3U) << "reading goes on";
}

std::string Meaning(const Phrasebook& book, const std::string& text) {
  const auto understood = book.Understand(text);
  return understood ? understood->command.action + "|" + DescribeData(understood->command) : "nothing";
}

TEST(PhraseFile, AddsAndReplacesPhrases) {
  const PhraseFile file{
      "own.phrases",
      "[pieces]\n<media> -> the tape\n[search]\nwhodunit[s] -> genre=crime\n[phrases]\n"
      "pause -> ACTION_STOP\n"
      "order [{number}] ticket[s] for {title} -> ACTION_CUSTOM intent=order count={number} title={title}\n"
      "say {words} -> ACTION_CUSTOM \"a=b {words}\"\n"};
  const auto book = Phrasebook::Open("", {file});
  ASSERT_TRUE(book) << book.error().message;
  const std::pair<const char*, const char*> rows[] = {
      {"Pause, please", "ACTION_STOP|"},
      {"pause the tape", "ACTION_PAUSE|"},
      {"pause the movie", "nothing"},
      {"stop", "ACTION_STOP|"},
      {"order two tickets for The Sea", "ACTION_CUSTOM|intent=order count=2 title=\"The Sea\""},
      {"order tickets for The Sea", "ACTION_CUSTOM|intent=order count=\"\" title=\"The Sea\""},
      {"say hello {there}", "ACTION_CUSTOM|a=b hello {there}"},
      {"find whodunits", "ACTION_DEFAULT_SEARCH|utterance=\"find whodunits\" genre=crime raw=whodunits"},
  };
  for (const auto& [text, meaning] : rows) EXPECT_EQ(Meaning(*book, text), meaning) << text;
}

TEST(PhraseFile, BringsALanguage) {
  const PhraseFile file{
      "it.phrases",
      "language it Italiano\n[numbers]\nun[o|a] -> 1\ndue -> 2\nventi -> 20\nvent{1-1} -> 20\nventi{2-9} -> "
      "20\n"
      "[time]\n{m:amount} minut(o|i) [e {s:amount} second(o|i)] -> 60 {m} + {s}\n[phrases]\n"
      "avanti di {time} -> ACTION_MEDIA_SKIP_FORWARD {time}\n"};
  const auto book = Phrasebook::Open("", {file});
  ASSERT_TRUE(book) << book.error().message;
  EXPECT_EQ(book->name(), "Italiano");
  EXPECT_EQ(Meaning(*book, "avanti di ventuno minuti e due secondi"), "ACTION_MEDIA_SKIP_FORWARD|1262");
  EXPECT_EQ(Meaning(*book, "pause"), "nothing");
}

TEST(PhraseFile, MustBeOfTheLanguage) {
  const PhraseFile file{"it.phrases", "language it Italiano\n[phrases]\nx -> ACTION_PLAY\n"};
  EXPECT_EQ(Phrasebook::Open("de", {file}).error().message, "The language of it.phrases is it, not de.");
  EXPECT_EQ(
      Phrasebook::Open("xx", {}).error().message,
      "Unknown language \"xx\". Use en, de, fr, es, ko, or a phrase file that begins with \"language xx\".");
  EXPECT_EQ(Phrasebook::Open("", {{"f", "[phrases]\nx"}}).error().message,
            "f:2:2: Expected -> and what the words mean.");
}

TEST(PhraseFile, LocalesHaveLanguages) {
  for (const auto& [locale, tag] :
       {std::pair("de_AT.UTF-8@euro", "de"), std::pair("ko", "ko"), std::pair("fr-CA", "fr"),
        std::pair("C.UTF-8", ""), std::pair("", ""), std::pair("den_XX", "")}) {
    EXPECT_EQ(BuiltInLanguage(locale), tag) << locale;
  }
}

std::string Repeated(const std::string& text, size_t size) {
  std::string all;
  while (all.size() < size) all += text;
  return all;
}

// Each of these once took minutes or all memory in a reader that expands patterns.
TEST(PhraseFile, HostileFilesEndWithAnError) {
  std::string doubling = "[pieces]\n<a> -> x y\n";
  for (char c = 'a'; c < 'z'; ++c)
    doubling += std::string("<") + char(c + 1) + "> -> (<" + c + ">|<" + c + ">) <" + c + ">\n";
  const std::string texts[] = {
      "[phrases]\n" + Repeated("(", 4000),
      "[phrases]\n" + Repeated("x", 5000) + " -> ACTION_PLAY",
      "[phrases]\n" + Repeated("a[b|c|d|e]", 4000) + " -> ACTION_PLAY",
      "[phrases]\nx" + Repeated("[a]", 2000) + " -> ACTION_PLAY",
      doubling + "[phrases]\n<z> -> ACTION_PLAY\n",
      "[phrases]\n" + Repeated("x " + Repeated("[a b c] ", 3900) + " -> ACTION_PLAY\n", 900000),
      "[numbers]\n" + Repeated("(a|b) (c|d)", 4000) + " -> 1",
      "[letters]\na -> " + Repeated("a", 100) + "\nb -> " + Repeated("a", 100) + "\nc -> " +
          Repeated("b", 100),
      Repeated("x\n", (1 << 20) + 1),
  };
  for (const std::string& text : texts) {
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_FALSE(MistakesIn(text).empty()) << text.substr(0, 60);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(10)) << text.substr(0, 60);
  }
}

// Patterns that match in many ways, and texts that come close to many: both at their limits.
TEST(PhraseFile, LongTextsAreReadInProportionateTime) {
  const PhraseFile file{"f",
                        "[phrases]\n{a} and {b} and {c} and {d} -> ACTION_PLAY\n[a] [a] [a] [a] [a] [a] [a] "
                        "[a] a {t} -> ACTION_PLAY\n"};
  constexpr size_t kLongest = size_t{16} << 10U;
  const auto begin = std::chrono::steady_clock::now();
  for (const auto& [language, parts] :
       {std::pair("en", std::vector{"a", "a ", "and ", "please ", "from 1990 ", "1 ", "1 hour ",
                                    "one hundred ", "\"", "'", "x' ", "\xff", "\xcc\x81", "\xcc\xa3\xcc\x81",
                                    "go to ", "with ", "1:", "?"}),
        std::pair("ko", std::vector{"가", "영화", "를", "\u1100\u1161", "이십 "})}) {
    const auto book = Phrasebook::Open(language, {file});
    for (const char* part : parts) {
      for (const char* start : {"", "search for ", "a "}) {
        const std::string text = start + Repeated(part, kLongest).substr(0, kLongest - 16);
        book->Understand(text);
        book->Suggest(text);
        EXPECT_FALSE(book->Understand(text + text + text + text));
      }
      book->Explain(Repeated(part, kLongest));
      book->Folded(Repeated(part, size_t{1} << 20U));
    }
  }
  // A quadratic loop over any of them takes minutes; all of them take seconds, with sanitizers more.
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::minutes(1));
}

}  // namespace
}  // namespace corvis::kit
