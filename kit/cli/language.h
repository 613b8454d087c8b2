// The options for the language of phrases.
#ifndef CORVIS_KIT_CLI_LANGUAGE_H_
#define CORVIS_KIT_CLI_LANGUAGE_H_

#include <string>
#include <vector>

#include "app/spoken_language.h"
#include "base/result.h"
#include "cli/command_line.h"

namespace corvis::kit {

struct LanguageOptions {
  // A language tag. If empty, the language of the last phrase file that defines one, or the environment's.
  std::string tag;
  std::vector<std::string> phrase_files;
};

// Declares --language and --phrases.
void AddLanguageOptions(CLI::App& app, LanguageOptions& options);

// Opens the language. Fails with kUsage if a file has mistakes or the language is unknown.
Result<SpokenLanguage> OpenLanguage(const LanguageOptions& options);

// The tag of the language that pages see; empty for the environment's.
std::string PageLanguage(const LanguageOptions& options, const SpokenLanguage& language);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_CLI_LANGUAGE_H_
