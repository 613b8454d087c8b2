// Completing what is typed at the prompt.
#ifndef CORVIS_KIT_CLI_COMPLETION_H_
#define CORVIS_KIT_CLI_COMPLETION_H_

#include <string>
#include <vector>

namespace corvis::kit {

struct Completion {
  // What follows the typed text in each word that begins with it; with a space where that is one word only.
  std::string insertion;
  // Those words. Worth a list when nothing is inserted.
  std::vector<std::string> words;
};

Completion Complete(const std::string& typed, const std::vector<std::string>& words);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_CLI_COMPLETION_H_
