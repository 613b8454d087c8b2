// The language in which an application is spoken to: its options, and opening it.
#ifndef CORVIS_KIT_CLI_LANGUAGE_H_
#define CORVIS_KIT_CLI_LANGUAGE_H_

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

#include "app/spoken_language.h"
#include "base/result.h"

namespace corvis::kit {

struct LanguageOptions {
  // A tag. Empty for the environment's language, or that of the last phrase file that brings one.
  std::string tag;
  std::vector<std::string> phrase_files;
};

// Declares --language and --phrases.
void AddLanguageOptions(CLI::App& app, LanguageOptions& options);

// Fails with kUsage: the mistakes of a file, or a language that is not known.
Result<SpokenLanguage> OpenLanguage(const LanguageOptions& options);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_CLI_LANGUAGE_H_
