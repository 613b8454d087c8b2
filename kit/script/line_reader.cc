// A cursor over one line of a script.
#include "script/line_reader.h"

#include <algorithm>
#include <charconv>
#include <set>

#include "language/suggestions.h"

namespace corvis::kit {

namespace {
constexpr long kLongestTimeMs = 3'600'000;
constexpr const char* kPairExpected = "Expected key=\"value\".";

bool IsSpace(char c) {
  return c == ' ' || c == '\t';
}

// "a, b or c".
std::string Alternatives(const std::vector<std::string>& words) {
  std::string list;
  for (size_t i = 0; i < words.size(); ++i) {
    const char* separator = i == 0 ? "" : i + 1 == words.size() ? " or " : ", ";
    list += separator + words[i];
  }
  return list;
}

}  // namespace

void LineReader::SkipSpaces() {
  while (!is_at_end() && IsSpace(line_[at_])) ++at_;
}

void LineReader::FailAt(size_t at, const std::string& problem) {
  if (has_failed()) return;
  problem_ = problem;
  problem_at_ = at;
  at_ = line_.size();
}

std::string LineReader::Word() {
  const size_t begin = at_;
  while (!is_at_end() && !IsSpace(line_[at_])) ++at_;
  std::string word(line_.substr(begin, at_ - begin));
  SkipSpaces();
  return word;
}

bool LineReader::HasTextAfterWord() const {
  LineReader rest = *this;
  rest.Word();
  return rest.Peek() == '"' || rest.Peek() == '`';
}

bool LineReader::TakeWord(std::string_view word) {
  const size_t before = at_;
  if (Word() == word) return true;
  at_ = before;
  return false;
}

std::string LineReader::OneOf(std::initializer_list<const char*> words) {
  const size_t begin = at_;
  std::string word = Word();
  const std::vector<std::string> candidates(words.begin(), words.end());
  if (std::find(candidates.begin(), candidates.end(), word) != candidates.end()) return word;
  FailAt(begin, "Expected " + Alternatives(candidates) + (word.empty() ? "." : ", not \"" + word + "\".") +
                    DidYouMean(word, candidates));
  return "";
}

std::string LineReader::Between(char mark) {
  const size_t begin = at_;
  std::string text;
  for (++at_; !is_at_end() && line_[at_] != mark; ++at_) {
    if (line_[at_] == '\\' && at_ + 1 < line_.size() && line_[at_ + 1] == mark) ++at_;
    text += line_[at_];
  }
  if (is_at_end()) {
    FailAt(begin, std::string("The closing ") + mark + " is missing.");
    return "";
  }
  ++at_;
  SkipSpaces();
  return text;
}

char LineReader::Escaped() {
  constexpr std::string_view kNames = "ntr";
  constexpr std::string_view kMeanings = "\n\t\r";
  constexpr size_t kDigits = 2;
  const char c = line_[at_];
  const size_t name = kNames.find(c);
  if (name != std::string_view::npos) return kMeanings[name];
  if (c != 'x') return c;
  unsigned value = 0;
  const char* digits = line_.data() + at_ + 1;
  const char* last = digits + std::min(kDigits, line_.size() - at_ - 1);
  constexpr int kHexadecimal = 16;
  const auto [end, error] = std::from_chars(digits, last, value, kHexadecimal);
  if (error != std::errc() || end != digits + kDigits) {
    FailAt(at_ - 1, "Expected two hexadecimal digits after \\x.");
    return 0;
  }
  at_ += kDigits;
  return static_cast<char>(value);
}

std::string LineReader::Text(bool may_be_bare) {
  if (Peek() == '`') return Between('`');
  if (Peek() == '"') return QuotedText();
  if (may_be_bare && !is_at_end()) return Word();
  Fail("Expected a text in quotation marks.");
  return "";
}

std::string LineReader::QuotedText() {
  const size_t begin = at_;
  std::string text;
  for (++at_; !is_at_end() && line_[at_] != '"'; ++at_) {
    char c = line_[at_];
    if (c == '\\' && at_ + 1 < line_.size()) {
      ++at_;
      c = Escaped();
      if (has_failed()) return "";
    }
    text += c;
  }
  if (is_at_end()) {
    FailAt(begin, "The closing quotation mark is missing.");
    return "";
  }
  ++at_;
  SkipSpaces();
  return text;
}

long LineReader::Number() {
  const size_t begin = at_;
  long number = 0;
  const auto [end, error] = std::from_chars(line_.data() + at_, line_.data() + line_.size(), number);
  if (error != std::errc() || number < 0) {
    FailAt(begin, "Expected a whole number.");
    return 0;
  }
  at_ = static_cast<size_t>(end - line_.data());
  SkipSpaces();
  return number;
}

std::chrono::milliseconds LineReader::Duration() {
  const size_t begin = at_;
  const long number = Number();
  if (has_failed()) return {};
  const std::string unit = OneOf({"ms", "s"});
  const long factor = unit == "s" ? 1000 : 1;
  if (!has_failed() && number > kLongestTimeMs / factor) FailAt(begin, "The longest time is one hour.");
  return std::chrono::milliseconds(has_failed() ? 0 : number * factor);
}

Entries LineReader::Pairs() {
  Entries entries;
  std::set<std::string> keys;
  while (!is_at_end() && !has_failed()) {
    const size_t begin = at_;
    const size_t equals = line_.find('=', at_);
    if (equals == std::string_view::npos || equals == at_) {
      FailAt(begin, kPairExpected);
      return {};
    }
    const std::string key(line_.substr(at_, equals - at_));
    at_ = equals + 1;
    const std::string value = is_at_end() || IsSpace(Peek()) ? "" : Text(/*may_be_bare=*/true);
    SkipSpaces();
    if (key.find(' ') != std::string::npos) FailAt(begin, kPairExpected);
    if (!keys.insert(key).second) FailAt(begin, "The key " + key + " is given twice.");
    entries.emplace_back(key, value);
  }
  return has_failed() ? Entries{} : entries;
}

std::string LineReader::Rest(const char* what) {
  if (is_at_end()) Fail(std::string("Expected ") + what + ".");
  std::string rest(line_.substr(at_));
  at_ = line_.size();
  while (!rest.empty() && IsSpace(rest.back())) rest.pop_back();
  return rest;
}

void LineReader::End() {
  if (!is_at_end()) Fail("Expected the end of the line.");
}

}  // namespace corvis::kit
