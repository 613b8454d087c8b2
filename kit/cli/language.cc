// Declares the language options and opens the language that they select.
#include "cli/language.h"

#include "cli/command_line.h"

namespace corvis::kit {

void AddLanguageOptions(CLI::App& app, LanguageOptions& options) {
  BeginGroup(app, "Phrases");
  AddText(app, "--language", "TAG",
          "language: en, de, fr, es, ko or one of --phrases (default: the environment's)", options.tag);
  AddList(app, "--phrases", "FILE", "your own phrases, which take precedence; repeatable",
          options.phrase_files);
}

Result<SpokenLanguage> OpenLanguage(const LanguageOptions& options) {
  SpokenLanguage language;
  const std::string built_in = BuiltInLanguage(options.tag);
  Status opened = language.Speak(options.tag.empty() ? EnvironmentLanguage()
                                 : built_in.empty()  ? "en"
                                                     : built_in);
  for (const std::string& file : options.phrase_files) {
    if (opened) opened = language.AddFile(file);
  }
  if (opened && !options.tag.empty()) opened = language.Speak(options.tag);
  if (!opened) return Fail(opened.error());
  return language;
}

std::string PageLanguage(const LanguageOptions& options, const SpokenLanguage& language) {
  if (!options.tag.empty()) return options.tag;
  const std::string& spoken = language.phrases().tag();
  return spoken == EnvironmentLanguage() ? "" : spoken;
}

}  // namespace corvis::kit
