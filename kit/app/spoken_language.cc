// Reads phrase files from disk; kit/language parses them.
#include "app/spoken_language.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace corvis::kit {

Result<PhraseFile> ReadPhraseFile(const std::string& path) {
  // Read one byte more than the limit, so that the parser rejects a larger file.
  constexpr size_t kMost = (size_t{1} << 20U) + 1;
  std::error_code error;
  std::ifstream stream;
  if (std::filesystem::is_regular_file(path, error)) stream.open(path, std::ios::binary);
  if (!stream.is_open()) return Fail("The phrase file " + path + " can't be read.", ErrorKind::kUsage);
  std::string text(kMost, '\0');
  stream.read(text.data(), static_cast<std::streamsize>(kMost));
  text.resize(static_cast<size_t>(stream.gcount()));
  return PhraseFile{path, std::move(text)};
}

std::string EnvironmentLanguage() {
  for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    const char* locale = std::getenv(name);
    if (locale == nullptr || *locale == '\0') continue;
    const std::string language = BuiltInLanguage(locale);
    return language.empty() ? "en" : language;
  }
  return "en";
}

Status SpokenLanguage::Speak(const std::string& tag) {
  const bool is_brought = std::any_of(
      files_.begin(), files_.end(), [&tag](const PhraseFile& file) { return LanguageOf(file.text) == tag; });
  // A region without its own phrases, such as de-AT, uses those of the language.
  const std::string built_in = BuiltInLanguage(tag);
  return Open(is_brought || built_in.empty() ? tag : built_in, files_);
}

Status SpokenLanguage::AddFile(const std::string& path) {
  const Result<PhraseFile> file = ReadPhraseFile(path);
  if (!file) return Fail(file.error());
  std::vector<PhraseFile> files = files_;
  files.insert(files.begin(), *file);
  const std::string language = LanguageOf(file->text);
  return Open(language.empty() ? tag_ : language, files);
}

Status SpokenLanguage::Open(const std::string& tag, const std::vector<PhraseFile>& files) {
  // Files of other languages are kept until their language is selected.
  std::vector<PhraseFile> spoken;
  std::copy_if(files.begin(), files.end(), std::back_inserter(spoken), [&tag](const PhraseFile& file) {
    const std::string language = LanguageOf(file.text);
    return language.empty() || language == tag;
  });
  auto phrases = Phrasebook::Open(tag, spoken);
  if (!phrases) return Fail(phrases.error());
  phrases_ = std::move(*phrases);
  tag_ = tag;
  files_ = files;
  return {};
}

}  // namespace corvis::kit
