// Phrase files: what can be said in a language, as text. docs/phrases.md describes them.
#ifndef CORVIS_KIT_LANGUAGE_PHRASE_FILE_H_
#define CORVIS_KIT_LANGUAGE_PHRASE_FILE_H_

#include <string>
#include <string_view>
#include <vector>

#include "language/grammar.h"

namespace corvis::kit {

struct PhraseFile {
  // For messages.
  std::string name;
  std::string text;
};

// What is wrong in a phrase file. Columns count bytes, from 1.
struct PhraseMistake {
  PhrasePlace place;
  int column = 1;
  std::string message;
};

// "file:line:column: message".
std::string Describe(const PhraseMistake& mistake);

// Reads files of one language, those that win first. Reading goes on after a mistake.
Grammar ReadPhraseFiles(const std::vector<PhraseFile>& files, std::vector<PhraseMistake>& mistakes);

// The tag in the line "language TAG NAME" of a phrase file; empty without one.
std::string LanguageOf(std::string_view text);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_LANGUAGE_PHRASE_FILE_H_
