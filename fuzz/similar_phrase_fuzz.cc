// Suggestions for phrases that are not known, whatever their text: what is suggested is known. Apart from the
// other phrases because comparing takes its time.
#include "language/phrases.h"
#include "require.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace corvis::kit;
  const std::string similar = SimilarPhrase(FuzzText(data, size));
  Require(similar.empty() || CommandOf(similar) || TitleToSelect(similar), "what is suggested can be said");
  return 0;
}
