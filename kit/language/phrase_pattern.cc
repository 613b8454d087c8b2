// A pattern is expanded into its plain wordings; each is then compared from its front.
#include "language/phrase_pattern.h"

#include <algorithm>
#include <cctype>
#include <map>

namespace corvis::kit {

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

// The wordings as texts. Patterns are short and come from our table.
std::vector<std::string> Expanded(std::string_view pattern) {
  const size_t open = pattern.find_first_of("([");
  if (open == std::string_view::npos) return {std::string(pattern)};
  const bool is_optional = pattern[open] == '[';
  const size_t close = pattern.find(is_optional ? ']' : ')', open);
  std::vector<std::string> choices = Split(pattern.substr(open + 1, close - open - 1), '|');
  if (is_optional) choices.emplace_back();
  std::vector<std::string> wordings;
  for (const std::string& rest : Expanded(pattern.substr(close + 1))) {
    for (const std::string& choice : choices) {
      wordings.push_back(std::string(pattern.substr(0, open)).append(choice).append(rest));
    }
  }
  return wordings;
}

Wording TakeApart(const std::string& wording) {
  const size_t open = wording.find('{');
  if (open == std::string::npos) return {NormalisedPhrase(wording), "", ""};
  const size_t close = wording.find('}', open);
  return {NormalisedPhrase(wording.substr(0, open)), wording.substr(open + 1, close - open - 1),
          NormalisedPhrase(wording.substr(close + 1))};
}

char Lower(char c) {
  return static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
}

// `fixed` is in lower case.
bool IsSame(std::string_view said, std::string_view fixed) {
  return std::equal(said.begin(), said.end(), fixed.begin(), fixed.end(),
                    [](char a, char b) { return Lower(a) == b; });
}

bool IsBlank(char c) {
  return std::isspace(static_cast<unsigned char>(c)) != 0;
}

std::string_view WithoutQuotes(std::string_view words) {
  constexpr std::pair<std::string_view, std::string_view> kQuotes[] = {
      {"\"", "\""}, {"'", "'"}, {"“", "”"}, {"‘", "’"}};
  for (const auto& [open, close] : kQuotes) {
    if (words.size() <= open.size() + close.size() || words.substr(0, open.size()) != open ||
        words.substr(words.size() - close.size()) != close) {
      continue;
    }
    return words.substr(open.size(), words.size() - open.size() - close.size());
  }
  return words;
}

}  // namespace

std::string TidyPhrase(std::string_view phrase) {
  std::string tidy;
  for (const char c : phrase) {
    if (!IsBlank(c)) {
      tidy += c;
    } else if (!tidy.empty() && tidy.back() != ' ') {
      tidy += ' ';
    }
  }
  while (!tidy.empty() && std::string_view(" .!?,").find(tidy.back()) != std::string_view::npos)
    tidy.pop_back();
  return tidy;
}

std::vector<std::string> SplitWords(std::string_view text) {
  constexpr std::string_view kSpaces = " \t\n\v\f\r";
  std::vector<std::string> words;
  for (size_t at = text.find_first_not_of(kSpaces); at != std::string_view::npos;) {
    const size_t end = std::min(text.find_first_of(kSpaces, at), text.size());
    words.emplace_back(text.substr(at, end - at));
    at = text.find_first_not_of(kSpaces, end);
  }
  return words;
}

std::string NormalisedPhrase(std::string_view phrase) {
  std::string plain = TidyPhrase(phrase);
  std::transform(plain.begin(), plain.end(), plain.begin(), Lower);
  return plain;
}

std::vector<Wording> WordingsOf(std::string_view pattern) {
  std::vector<Wording> wordings;
  for (const std::string& text : Expanded(pattern)) wordings.push_back(TakeApart(text));
  return wordings;
}

std::optional<std::string_view> SlotWords(const Wording& wording, std::string_view phrase) {
  const size_t front = wording.before.size();
  if (!IsSame(phrase.substr(0, front), wording.before)) return {};
  if (wording.slot.empty()) return phrase.size() == front ? std::optional(std::string_view()) : std::nullopt;
  if (phrase.size() <= front + 1 || phrase[front] != ' ') return {};
  std::string_view words = phrase.substr(front + 1);
  if (!wording.behind.empty()) {
    const std::string end = " " + wording.behind;
    if (words.size() <= end.size() || !IsSame(words.substr(words.size() - end.size()), end)) return {};
    words.remove_suffix(end.size());
  }
  return WithoutQuotes(words);
}

std::string SlotExample(const std::string& slot) {
  static const std::map<std::string, const char*> kExamples = {
      {"number", "3"}, {"place", "third"}, {"time", "90 seconds"}};
  const auto found = kExamples.find(slot);
  return found == kExamples.end() ? "{" + slot + "}" : found->second;
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
  const size_t open = sample.find('{');
  const size_t close = sample.find('}');
  if (open != std::string::npos && close != std::string::npos) {
    sample.replace(open, close + 1 - open, SlotExample(sample.substr(open + 1, close - open - 1)));
  }
  return NormalisedPhrase(sample);
}

}  // namespace corvis::kit
