// What the build makes of the phrase files and of ICU's tables.
#ifndef CORVIS_KIT_LANGUAGE_DATA_H_
#define CORVIS_KIT_LANGUAGE_DATA_H_

#include <cstddef>

namespace corvis::kit {

// A language's tag, and the text of its phrase file with its words for numbers.
struct LanguageText {
  const char* tag;
  const char* text;
};

extern const LanguageText kLanguages[];
extern const size_t kLanguageCount;

// As generate/fold_table.h describes them.
extern const unsigned char kFoldedLetters[];
extern const size_t kFoldedLettersSize;
extern const unsigned char kMarkClasses[];
extern const size_t kMarkClassesSize;

}  // namespace corvis::kit

#endif  // CORVIS_KIT_LANGUAGE_DATA_H_
