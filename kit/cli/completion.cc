// Words that begin alike.
#include "cli/completion.h"

#include <algorithm>

namespace corvis::kit {

Completion Complete(const std::string& typed, const std::vector<std::string>& words) {
  Completion completion;
  for (const std::string& word : words) {
    if (word.compare(0, typed.size(), typed) == 0) completion.words.push_back(word);
  }
  if (completion.words.empty()) return completion;
  std::string common = completion.words[0];
  for (const std::string& word : completion.words) {
    common.resize(static_cast<size_t>(
        std::mismatch(common.begin(), common.end(), word.begin(), word.end()).first - common.begin()));
  }
  completion.insertion = common.substr(typed.size()) + (completion.words.size() == 1 ? " " : "");
  return completion;
}

}  // namespace corvis::kit
