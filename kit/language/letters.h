// Letters as they are compared: without case, in one form of what Unicode can write in several.
#ifndef CORVIS_KIT_LANGUAGE_LETTERS_H_
#define CORVIS_KIT_LANGUAGE_LETTERS_H_

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace corvis::kit {

// A letter, with the place in the original text that it was made of.
struct Letter {
  char32_t code;
  size_t begin;
  size_t end;
};

// Folds by Unicode's rules (NFKC_Casefold), and by what a language has besides. Letters come out decomposed,
// but for Hangul, which comes out composed; spaces, dashes, apostrophes, quotation marks and digits as in
// ASCII. Bytes that are no UTF-8 become U+FFFD.
class LetterFolding {
 public:
  // Lets this letter be compared as `text`: ä as ae.
  void Add(std::string_view letter, std::string_view text);

  std::vector<Letter> Fold(std::string_view text) const;

 private:
  using Own = std::map<std::u32string, std::u32string>;
  Own::const_iterator FindOwn(const std::u32string& letters) const;
  void Append(std::vector<Letter>& letters, Letter letter) const;

  Own own_;
};

void AppendUtf8(std::string& text, char32_t code);

// Whether the letter is a word of its own, since its script has no spaces between words or uses them freely.
bool IsWordByItself(char32_t code);

// What the word in front must end with: the difference of Korean particles such as 을/를.
enum class AfterEnding { kAny, kConsonant, kVowel };

// Whether such a particle may follow this letter. Any may follow what is neither Hangul nor a digit.
bool MayFollow(char32_t last, AfterEnding after);

// Whether both texts are one Hangul syllable, with one consonant or vowel different.
bool DifferInOneJamo(std::string_view one, std::string_view other);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_LANGUAGE_LETTERS_H_
