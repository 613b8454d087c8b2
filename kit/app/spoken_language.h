// The language in which an application is spoken to, with an author's own phrase files.
#ifndef CORVIS_KIT_APP_SPOKEN_LANGUAGE_H_
#define CORVIS_KIT_APP_SPOKEN_LANGUAGE_H_

#include <string>
#include <vector>

#include "base/result.h"
#include "language/phrasebook.h"

namespace corvis::kit {

// Reads the text of a phrase file. Fails with kUsage if it can't be read.
Result<PhraseFile> ReadPhraseFile(const std::string& path);

// The tag of the environment's language (LC_ALL, LC_MESSAGES, LANG) if it is built in, otherwise that of
// English.
std::string EnvironmentLanguage();

class SpokenLanguage {
 public:
  // Starts with English.
  SpokenLanguage() = default;

  // Selects a language that is defined by a file added before, or built in, then for any region (de-AT).
  // Changes nothing on failure.
  Status Speak(const std::string& tag);
  // Adds a phrase file. Its phrases take precedence over existing ones. A file in another language selects
  // that language.
  Status AddFile(const std::string& path);

  const Phrasebook& phrases() const { return phrases_; }

 private:
  Status Open(const std::string& tag, const std::vector<PhraseFile>& files);

  Phrasebook phrases_ = Phrasebook::English();
  std::string tag_ = "en";
  // In reverse order of addition.
  std::vector<PhraseFile> files_;
};

}  // namespace corvis::kit

#endif  // CORVIS_KIT_APP_SPOKEN_LANGUAGE_H_
