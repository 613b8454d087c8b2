// What is compared as the same, and where words begin and end.
#include "language/letters.h"

#include <gtest/gtest.h>
#include <unicode/normalizer2.h>
#include <unicode/uchar.h>

#include "language/phrasebook.h"
#include "language/words.h"

namespace corvis::kit {
namespace {

std::u32string Codes(const LetterFolding& folding, const std::string& text) {
  std::u32string codes;
  for (const Letter& letter : folding.Fold(text)) codes += letter.code;
  return codes;
}

// Every letter is folded as by ICU, and composed as well as decomposed.
TEST(Letters, AreFoldedByUnicodesRules) {
  UErrorCode error = U_ZERO_ERROR;
  const auto* fold = icu::Normalizer2::getNFKCCasefoldInstance(error);
  const auto* decompose = icu::Normalizer2::getNFDInstance(error);
  int count = 0;
  for (UChar32 c = 0x80; c < 0x110000; ++c) {
    if (u_charType(c) == U_UNASSIGNED || u_charType(c) == U_SURROGATE || u_charType(c) == U_PRIVATE_USE_CHAR)
      continue;
    // Marks, spaces and digits become those of ASCII.
    if (u_ispunct(c) || u_isUWhiteSpace(c) || u_iscntrl(c) || u_charDigitValue(c) >= 0 ||
        u_charType(c) == U_MODIFIER_SYMBOL || u_charType(c) == U_MODIFIER_LETTER) {
      continue;
    }
    std::string text;
    std::string folded;
    std::string decomposed;
    icu::UnicodeString(c).toUTF8String(text);
    fold->normalize(icu::UnicodeString(c), error).toUTF8String(folded);
    decompose->normalize(icu::UnicodeString(c), error).toUTF8String(decomposed);
    ASSERT_EQ(Codes({}, text), Codes({}, folded)) << std::hex << c;
    ASSERT_EQ(Codes({}, text), Codes({}, decomposed)) << std::hex << c;
    ++count;
  }
  EXPECT_GT(count, 100000);
}

TEST(Letters, ThatAreComparedAsTheSame) {
  const std::pair<const char*, std::vector<const char*>> rows[] = {
      {"en",
       {"What’s on?", "what's on", "WHAT`S ON", "what\u02BCs\u00A0on", "ＷＨＡＴ＇Ｓ\u3000ｏｎ！",
        "“What's” on"}},
      {"en", {"Sci-Fi", "sci fi", "SCI\u2011FI", "sci\u2013fi", "ｓｃｉ ﬁ"}},
      {"en", {"café", "cafe\u0301", "CAF\u00C9", "ca\u00ADf\u200Bé"}},
      {"de", {"Große Öfen", "GROSSE ÖFEN", "grosse Oefen", "große O\u0308fen"}},
      {"fr",
       {"Élève à l'école", "eleve a l’ecole", "ÉLÈVE À L'ÉCOLE", "E\u0301le\u0300ve a\u0300 l'e\u0301cole"}},
      {"ko",
       {"마지막 항구", "마지막항구",
        "\u1106\u1161\u110C\u1175\u1106\u1161\u11A8 \u1112\u1161\u11BC\u1100\u116E"}},
  };
  for (const auto& [language, texts] : rows) {
    const auto book = Phrasebook::Open(language, {});
    for (const char* text : texts) EXPECT_EQ(book->Folded(text), book->Folded(texts[0])) << text;
  }
}

TEST(Letters, ThatAreNot) {
  const auto english = Phrasebook::Open("en", {});
  const auto german = Phrasebook::Open("de", {});
  EXPECT_NE(english->Folded("cafe"), english->Folded("café"));
  EXPECT_NE(german->Folded("schon"), german->Folded("schön"));
}

TEST(Letters, OfALanguageHaveItsRules) {
  LetterFolding turkish;
  turkish.Add("I", "ı");
  turkish.Add("İ", "i");
  EXPECT_EQ(Codes(turkish, "KAPI İZLE"), Codes(turkish, "kapı izle"));
  EXPECT_NE(Codes(turkish, "KAPI"), Codes(turkish, "kapi"));
}

TEST(Letters, AreReadFromAnyBytes) {
  EXPECT_EQ(Codes({}, "a\xC3\x28\xE2\x82z\xF0\x90\xED\xA0\x80\xC0\xAF"),
            Codes({}, "a\uFFFD(\uFFFD\uFFFDz\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD"));
}

TEST(Words, AreSplit) {
  const std::pair<const char*, const char*> rows[] = {
      {"  Twenty-one,  l'heure d’1h30 ", "twenty|one|l'|heure|d'|1|h|30"},
      {"22nd 1.5 1,5 1:02:03 1990-05-17 -3", "22|nd|1.5|1,5|1:02:03|1990-05-17|3"},
      {"2. Platz. 3.º 4.", "2|.|platz|3|.|o|4"},
      {"30초 마지막", "30|초|마|지|막"},
      {"open \"What now?\" and ‘마 지’를", "open|\"what now?\"|and|'마 지'|를"},
      {"rock 'n' roll don't \"open", "rock|'n'|roll|don'|t|open"},
      {"...!? ()", ""},
  };
  for (const auto& [text, expected] : rows) {
    std::string joined;
    for (const Word& word : SplitWords({}, text)) joined += (joined.empty() ? "" : "|") + word.text;
    EXPECT_EQ(joined, expected);
  }
}

TEST(Words, KeepTheirText) {
  const std::string text = "play  “What\u00A0 now?” or, ﬁne\tJ. Doe!";
  const auto words = SplitWords({}, text);
  EXPECT_EQ(Original(text, words, 1, 2), "What now?");
  EXPECT_EQ(Original(text, words, 1, words.size()), "“What now?” or, ﬁne J. Doe");
}

}  // namespace
}  // namespace corvis::kit
