// Reading spoken numbers and times.
#include "phrases/numbers.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <vector>

namespace corvis::voice {

namespace {

// Nobody says a number in more words.
constexpr size_t kMostWords = 12;
constexpr size_t kMostDigits = 9;

const std::map<std::string, long>& SmallNumbers() {
  static const std::map<std::string, long> numbers = {
      {"zero", 0},      {"one", 1},        {"two", 2},        {"three", 3},    {"four", 4},
      {"five", 5},      {"six", 6},        {"seven", 7},      {"eight", 8},    {"nine", 9},
      {"ten", 10},      {"eleven", 11},    {"twelve", 12},    {"thirteen", 13}, {"fourteen", 14},
      {"fifteen", 15},  {"sixteen", 16},   {"seventeen", 17}, {"eighteen", 18}, {"nineteen", 19},
      {"twenty", 20},   {"thirty", 30},    {"forty", 40},     {"fifty", 50},   {"sixty", 60},
      {"seventy", 70},  {"eighty", 80},    {"ninety", 90}};
  return numbers;
}

const std::map<std::string, std::string>& OrdinalWords() {
  static const std::map<std::string, std::string> words = {
      {"first", "one"},       {"second", "two"},       {"third", "three"},       {"fourth", "four"},
      {"fifth", "five"},      {"sixth", "six"},        {"seventh", "seven"},     {"eighth", "eight"},
      {"ninth", "nine"},      {"tenth", "ten"},        {"eleventh", "eleven"},   {"twelfth", "twelve"},
      {"thirteenth", "thirteen"}, {"fourteenth", "fourteen"}, {"fifteenth", "fifteen"},
      {"sixteenth", "sixteen"},   {"seventeenth", "seventeen"}, {"eighteenth", "eighteen"},
      {"nineteenth", "nineteen"}, {"twentieth", "twenty"}, {"thirtieth", "thirty"}};
  return words;
}

bool isDigits(const std::string& text) {
  return !text.empty() && text.size() <= kMostDigits && text.find_first_not_of("0123456789") == std::string::npos;
}

// "twenty-one" counts as two words.
std::vector<std::string> NumberWords(Span words) {
  std::vector<std::string> parts;
  for (size_t i = 0; i < words.count; ++i) {
    const std::string& word = words[i].folded;
    const size_t hyphen = word.find('-');
    if (hyphen != std::string::npos && hyphen > 0 && SmallNumbers().count(word.substr(0, hyphen)) != 0) {
      parts.push_back(word.substr(0, hyphen));
      parts.push_back(word.substr(hyphen + 1));
    } else {
      parts.push_back(word);
    }
  }
  return parts;
}

std::optional<long> FromDigits(std::string text) {
  text.erase(std::remove(text.begin(), text.end(), ','), text.end());
  if (!isDigits(text)) return std::nullopt;
  return std::strtol(text.c_str(), nullptr, 10);
}

// Adds up number words: each stands for less than the one before it, "hundred" and "thousand" multiply.
class NumberWordSum {
 public:
  bool Add(const std::string& word) {
    if (word == "hundred") return Multiply();
    if (word == "thousand") return CloseThousands();
    const auto found = SmallNumbers().find(word);
    if (found == SmallNumbers().end() || !fits(found->second)) return false;
    below_hundred_ += found->second;
    has_unit_ = found->second < 20;
    has_any_ = true;
    return true;
  }
  std::optional<long> Total() const {
    if (!has_any_) return std::nullopt;
    return thousands_ + hundreds_ + below_hundred_;
  }

 private:
  bool fits(long value) const {
    if (has_unit_) return false;
    return below_hundred_ == 0 || (value > 0 && value < 10);
  }
  bool Multiply() {
    if (below_hundred_ == 0 || below_hundred_ >= 20 || hundreds_ != 0) return false;
    hundreds_ = below_hundred_ * 100;
    below_hundred_ = 0;
    has_unit_ = false;
    return true;
  }
  bool CloseThousands() {
    if (thousands_ != 0 || hundreds_ + below_hundred_ == 0) return false;
    thousands_ = (hundreds_ + below_hundred_) * 1000;
    hundreds_ = below_hundred_ = 0;
    has_unit_ = false;
    return true;
  }

  long thousands_ = 0;
  long hundreds_ = 0;
  long below_hundred_ = 0;
  bool has_unit_ = false;
  bool has_any_ = false;
};

std::optional<long> FromWords(const std::vector<std::string>& parts) {
  NumberWordSum sum;
  for (size_t i = 0; i < parts.size(); ++i) {
    const bool is_joint = parts[i] == "and" && i > 0 && i + 1 < parts.size();
    if (!is_joint && !sum.Add(parts[i])) return std::nullopt;
  }
  return sum.Total();
}

// "21st", "3rd" without their letters; other words as they are.
std::string WithoutOrdinalEnding(const std::string& word) {
  if (word.size() > 2 && isDigits(word.substr(0, word.size() - 2))) {
    for (const char* ending : {"st", "nd", "rd", "th"}) {
      if (word.compare(word.size() - 2, 2, ending) == 0) return word.substr(0, word.size() - 2);
    }
  }
  const auto found = OrdinalWords().find(word);
  return found == OrdinalWords().end() ? word : found->second;
}

}  // namespace

std::optional<long> ParseNumber(Span words) {
  if (words.count == 0 || words.count > kMostWords) return std::nullopt;
  if (words.count == 1) {
    const std::optional<long> digits = FromDigits(words[0].folded);
    if (digits) return digits;
  }
  return FromWords(NumberWords(words));
}

std::optional<long> ParseOrdinal(Span words) {
  if (words.count == 0 || words.count > kMostWords) return std::nullopt;
  std::vector<std::string> parts = NumberWords(words);
  parts.back() = WithoutOrdinalEnding(parts.back());
  if (parts.size() == 1 && isDigits(parts[0])) return FromDigits(parts[0]);
  return FromWords(parts);
}

namespace {

constexpr double kLongestSeconds = 360000;

// What a unit is in seconds; nothing for another word.
std::optional<double> UnitSeconds(const std::string& word) {
  static const std::map<std::string, double> units = {
      {"s", 1},       {"sec", 1},      {"secs", 1},     {"second", 1},  {"seconds", 1}, {"m", 60},
      {"min", 60},    {"mins", 60},    {"minute", 60},  {"minutes", 60}, {"h", 3600},   {"hr", 3600},
      {"hrs", 3600},  {"hour", 3600},  {"hours", 3600}};
  const auto found = units.find(word);
  if (found == units.end()) return std::nullopt;
  return found->second;
}

// "12", "1.5"; no sign, no exponent.
std::optional<double> Decimal(const std::string& text) {
  const size_t point = text.find('.');
  const std::string whole = text.substr(0, point);
  if (point == std::string::npos) {
    if (!isDigits(text)) return std::nullopt;
  } else if (!isDigits(whole) || !isDigits(text.substr(point + 1))) {
    return std::nullopt;
  }
  return std::strtod(text.c_str(), nullptr);
}

// "1:30" and "1:02:03".
std::optional<double> Clock(const std::string& text) {
  double seconds = 0;
  size_t begin = 0;
  size_t fields = 0;
  while (begin <= text.size()) {
    const size_t end = std::min(text.find(':', begin), text.size());
    const std::string field = text.substr(begin, end - begin);
    if (!isDigits(field) || (fields > 0 && field.size() != 2) || ++fields > 3) return std::nullopt;
    seconds = seconds * 60 + std::strtod(field.c_str(), nullptr);
    begin = end + 1;
  }
  if (fields < 2) return std::nullopt;
  return seconds;
}

// The amount before a unit: a number, "a", "an", "half a", "half an".
std::optional<double> Amount(Span words) {
  if (words.count == 0) return std::nullopt;
  const bool is_half = words[0].folded == "half";
  const Span rest = is_half ? words.From(1) : words;
  if (rest.count == 1 && (rest[0].folded == "a" || rest[0].folded == "an")) return is_half ? 0.5 : 1;
  if (is_half) return std::nullopt;
  if (words.count == 1) {
    const std::optional<double> decimal = Decimal(words[0].folded);
    if (decimal) return decimal;
  }
  const std::optional<long> number = ParseNumber(words);
  if (!number) return std::nullopt;
  return static_cast<double>(*number);
}

// "90s", "2m", "5min": amount and unit in one word.
std::optional<double> Compact(const std::string& word) {
  const size_t letters = word.find_first_not_of("0123456789.");
  if (letters == 0 || letters == std::string::npos) return std::nullopt;
  const std::optional<double> amount = Decimal(word.substr(0, letters));
  const std::optional<double> unit = UnitSeconds(word.substr(letters));
  if (!amount || !unit) return std::nullopt;
  return *amount * *unit;
}

// Several amounts with their units, the larger units first, joined by "and" or by nothing.
std::optional<double> SumOfUnits(Span words) {
  double sum = 0;
  double last_unit = kLongestSeconds;
  size_t begin = 0;
  for (size_t i = 0; i < words.count; ++i) {
    std::optional<double> part = i == begin ? Compact(words[i].folded) : std::nullopt;
    const std::optional<double> unit = UnitSeconds(words[i].folded);
    if (!part && !unit) continue;
    if (!part) {
      const std::optional<double> amount = Amount(words.From(begin).Until(i - begin));
      if (!amount || *unit >= last_unit) return std::nullopt;
      part = *amount * *unit;
      last_unit = *unit;
    }
    sum += *part;
    begin = i + 1;
    if (begin + 1 < words.count && words[begin].folded == "and") i = begin++;
  }
  if (begin != words.count || begin == 0) return std::nullopt;
  return sum;
}

}  // namespace

std::optional<double> ParseSeconds(Span words) {
  if (words.count == 0 || words.count > kMostWords) return std::nullopt;
  std::optional<double> seconds = Clock(words[0].folded);
  if (words.count > 1) seconds.reset();
  if (!seconds) seconds = Amount(words);
  if (!seconds) seconds = SumOfUnits(words);
  if (!seconds || *seconds > kLongestSeconds) return std::nullopt;
  return seconds;
}

std::string DecimalText(double value) {
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%.3f", value);
  std::string decimal = text.data();
  decimal.erase(decimal.find_last_not_of('0') + 1);
  if (decimal.back() == '.') decimal.pop_back();
  return decimal;
}

}  // namespace corvis::voice
