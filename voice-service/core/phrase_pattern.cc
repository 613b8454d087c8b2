// A pattern is expanded into its plain wordings; each is then compared from its front.
#include "core/phrase_pattern.h"

#include <cctype>

namespace corvis::voice {

namespace {

std::vector<std::string> Split(std::string_view text, char mark) {
  std::vector<std::string> parts(1);
  for (const char c : text) {
    if (c == mark) {
      parts.emplace_back();
    } else {
      parts.back() += c;
    }
  }
  return parts;
}

// Every wording of the pattern, with (a|b) and [a|b] written out. Patterns are short and come from our table.
std::vector<std::string> Wordings(std::string_view pattern) {
  const size_t open = pattern.find_first_of("([");
  if (open == std::string_view::npos) return {std::string(pattern)};
  const bool is_optional = pattern[open] == '[';
  const size_t close = pattern.find(is_optional ? ']' : ')', open);
  std::vector<std::string> choices = Split(pattern.substr(open + 1, close - open - 1), '|');
  if (is_optional) choices.emplace_back();
  std::vector<std::string> wordings;
  for (const std::string& rest : Wordings(pattern.substr(close + 1))) {
    for (const std::string& choice : choices) {
      wordings.push_back(std::string(pattern.substr(0, open)).append(choice).append(rest));
    }
  }
  return wordings;
}

// The wording's text before and behind its slot, and the slot's name.
struct Wording {
  std::string before;
  std::string slot;
  std::string behind;
};

Wording TakeApart(const std::string& wording) {
  const size_t open = wording.find('{');
  if (open == std::string::npos) return {NormalisedPhrase(wording), "", ""};
  const size_t close = wording.find('}', open);
  return {NormalisedPhrase(wording.substr(0, open)), wording.substr(open + 1, close - open - 1),
          NormalisedPhrase(wording.substr(close + 1))};
}

bool StartsWith(std::string_view text, std::string_view start) {
  return text.substr(0, start.size()) == start;
}

bool IsMatch(const Wording& wording, const std::string& phrase, std::string& words) {
  if (wording.slot.empty()) return phrase == wording.before;
  if (!StartsWith(phrase, wording.before + " ")) return false;
  words = phrase.substr(wording.before.size() + 1);
  if (!wording.behind.empty()) {
    const std::string end = " " + wording.behind;
    if (words.size() <= end.size() || words.substr(words.size() - end.size()) != end) return false;
    words.resize(words.size() - end.size());
  }
  return !words.empty();
}

bool IsBlank(char c) {
  return std::isspace(static_cast<unsigned char>(c)) != 0;
}

}  // namespace

std::string NormalisedPhrase(std::string_view phrase) {
  std::string plain;
  for (const char c : phrase) {
    if (!IsBlank(c)) {
      plain += static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
    } else if (!plain.empty() && plain.back() != ' ') {
      plain += ' ';
    }
  }
  while (!plain.empty() && std::string_view(" .!?,").find(plain.back()) != std::string_view::npos)
    plain.pop_back();
  return plain;
}

std::vector<SlotValue> MatchPattern(std::string_view pattern, const std::string& phrase) {
  std::vector<SlotValue> matches;
  for (const std::string& text : Wordings(pattern)) {
    const Wording wording = TakeApart(text);
    std::string words;
    if (IsMatch(wording, phrase, words)) matches.push_back({wording.slot, words});
  }
  return matches;
}

std::string SampleOfPattern(std::string_view pattern) {
  // The last choice made in each place is "left out" for what may be left out, the first one for the others.
  std::string sample;
  char end = 0;
  bool is_skipping = false;
  for (const char c : pattern) {
    if (c == '(' || c == '[') {
      end = c == '(' ? ')' : ']';
      is_skipping = c == '[';
    } else if (end != 0 && c == end) {
      end = 0;
      is_skipping = false;
    } else if (end == ')' && c == '|') {
      is_skipping = true;
    } else if (!is_skipping) {
      sample += c;
    }
  }
  for (const auto& [slot, example] : {std::pair("{number}", "3"), std::pair("{time}", "90 seconds")}) {
    const size_t at = sample.find(slot);
    if (at != std::string::npos) sample.replace(at, std::string_view(slot).size(), example);
  }
  return NormalisedPhrase(sample);
}

}  // namespace corvis::voice
