// Finds the continuations of a typed text.
#include "cli/completion.h"

#include <algorithm>
#include <cctype>
#include <utility>

namespace corvis::kit {

namespace {

bool IsSameLetter(char a, char b) {
  return std::tolower(static_cast<unsigned char>(a)) == std::tolower(static_cast<unsigned char>(b));
}

bool StartsWith(const std::string& word, const std::string& typed) {
  return word.size() >= typed.size() && std::equal(typed.begin(), typed.end(), word.begin(), IsSameLetter);
}

// Drops the bytes of a character that is not whole.
void DropPart(std::string& text, const std::string& whole) {
  const auto is_inside = [&](size_t at) { return at < whole.size() && (whole[at] & 0xc0) == 0x80; };
  while (!text.empty() && is_inside(text.size())) text.pop_back();
}

}  // namespace

Completion Complete(const std::string& typed, const std::vector<std::string>& words) {
  Completion completion;
  for (const std::string& word : words) {
    if (StartsWith(word, typed)) completion.words.push_back(word);
  }
  if (completion.words.empty()) return completion;
  const std::string& first = completion.words[0];
  std::string common = first;
  for (const std::string& word : completion.words) {
    common.resize(static_cast<size_t>(
        std::mismatch(common.begin(), common.end(), word.begin(), word.end(), IsSameLetter).first -
        common.begin()));
  }
  DropPart(common, first);
  if (common.size() > typed.size()) completion.insertion = common.substr(typed.size());
  if (completion.words.size() == 1) completion.insertion += " ";
  return completion;
}

std::string SelectingPart(const Phrasebook& phrases, const std::string& typed) {
  constexpr const char* kTitle = "qxz";
  std::string longest;
  for (size_t space = typed.find(' '); space != std::string::npos; space = typed.find(' ', space + 1)) {
    std::string beginning = typed.substr(0, space + 1);
    const auto understood = phrases.Understand(beginning + kTitle);
    const bool is_title = understood && understood->command.action == "ACTION_ITEM_SELECTION" &&
                          understood->item && understood->item->title == kTitle;
    if (is_title) longest = std::move(beginning);
  }
  return longest;
}

std::vector<std::string> ValuesOfAction(const Phrasebook& phrases, const std::string& action) {
  std::vector<std::string> values;
  for (const std::string& sample : phrases.Samples()) {
    const auto understood = phrases.Understand(sample);
    if (!understood || understood->command.action != action || understood->item) continue;
    std::string value = DescribeData(understood->command);
    const bool is_new = std::find(values.begin(), values.end(), value) == values.end();
    if (is_new && !value.empty()) values.push_back(std::move(value));
  }
  return values;
}

std::vector<std::string> Each(const std::string& beginning, const std::vector<std::string>& values) {
  std::vector<std::string> lines;
  lines.reserve(values.size());
  for (const std::string& value : values) lines.push_back(beginning + value);
  return lines;
}

}  // namespace corvis::kit
