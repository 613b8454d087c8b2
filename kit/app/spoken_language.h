// The language in which an application is spoken to, with an author's own phrase files.
#ifndef CORVIS_KIT_APP_SPOKEN_LANGUAGE_H_
#define CORVIS_KIT_APP_SPOKEN_LANGUAGE_H_

#include <string>
#include <vector>

#include "base/result.h"
#include "language/phrasebook.h"

namespace corvis::kit {

// Fails with the mistakes of a file, or when it can't be read.
Result<PhraseFile> ReadPhraseFile(const std::string& path);

// The language of the process's environment (LC_ALL, LC_MESSAGES, LANG) where it is built in; English
// otherwise.
std::string EnvironmentLanguage();

class SpokenLanguage {
 public:
  // English.
  SpokenLanguage() = default;

  // Speaks a language: one that is built in, or that a file brings, which was added before. Nothing changes
  // on failure.
  Status Speak(const std::string& tag);
  // Adds a phrase file. Its phrases win over those that are there; a file in another language changes the
  // language.
  Status AddFile(const std::string& path);

  const Phrasebook& phrases() const { return phrases_; }

 private:
  Status Open(const std::string& tag, const std::vector<PhraseFile>& files);

  Phrasebook phrases_ = Phrasebook::English();
  std::string tag_ = "en";
  // The last one added first.
  std::vector<PhraseFile> files_;
};

}  // namespace corvis::kit

#endif  // CORVIS_KIT_APP_SPOKEN_LANGUAGE_H_
