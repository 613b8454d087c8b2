// Fuzzes suggestions for unknown phrases: every suggestion is a known phrase. Separate from phrase_fuzz.cc,
// because comparing is slow.
#include "language/phrasebook.h"
#include "require.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace corvis::kit;
  static const Phrasebook kEnglish = Phrasebook::English();
  static const Phrasebook kKorean = Phrasebook::Open("ko", {}).value();
  for (const Phrasebook& phrases : {kEnglish, kKorean}) {
    const std::string similar = phrases.Suggest(FuzzText(data, size));
    Require(similar.empty() || phrases.Understand(similar), "what is suggested can be said");
  }
  return 0;
}
