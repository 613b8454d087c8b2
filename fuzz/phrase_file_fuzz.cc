// Fuzzes phrase files: any file is parsed in bounded time, and the phrases that it defines are understood.
#include <chrono>

#include "language/phrasebook.h"
#include "require.h"

namespace {

using namespace corvis::kit;

void RequirePlace(const PhraseMistake& mistake, size_t lines) {
  Require(mistake.place.line >= 1 && static_cast<size_t>(mistake.place.line) <= lines,
          "a mistake is on a line");
  Require(mistake.column >= 1 && !mistake.message.empty(), "a mistake has a column and a message");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string text = FuzzText(data, size);
  const auto begin = std::chrono::steady_clock::now();
  std::vector<PhraseMistake> mistakes;
  const Phrasebook phrases = Phrasebook::Read({{"file", text}}, mistakes);
  for (const PhraseMistake& mistake : mistakes) RequirePlace(mistake, size + 1);
  for (const std::string& sample : phrases.Samples()) phrases.Understand(sample);
  phrases.Understand("one hour from 1990 to the third");
  phrases.Suggest("one huor");
  LanguageOf(text);
  // Nested brackets take time, but at most this much, even with sanitizers on a busy machine.
  Require(std::chrono::steady_clock::now() - begin < std::chrono::seconds(20), "a file is read in time");
  return 0;
}
