// Words to numbers.
#include "language/spoken_number.h"

#include <charconv>
#include <cmath>
#include <map>
#include <string_view>

#include "language/phrase_pattern.h"

namespace corvis::kit {

namespace {

constexpr long kLargestNumber = 1'000'000;
constexpr long kMinute = 60;
constexpr long kHour = 60 * kMinute;
constexpr long kHundred = 100;
// Nobody says a longer number or time, and longer words need not be looked at.
constexpr size_t kLongestWords = 100;

std::optional<long> Digits(std::string_view text) {
  long number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size() || number < 0 || number > kLargestNumber)
    return {};
  return number;
}

std::optional<long> Word(const std::string& word) {
  static const std::map<std::string, long> kWords = {
      {"zero", 0},      {"one", 1},       {"a", 1},        {"an", 1},       {"two", 2},
      {"three", 3},     {"four", 4},      {"five", 5},     {"six", 6},      {"seven", 7},
      {"eight", 8},     {"nine", 9},      {"ten", 10},     {"eleven", 11},  {"twelve", 12},
      {"thirteen", 13}, {"fourteen", 14}, {"fifteen", 15}, {"sixteen", 16}, {"seventeen", 17},
      {"eighteen", 18}, {"nineteen", 19}, {"twenty", 20},  {"thirty", 30},  {"forty", 40},
      {"fifty", 50},    {"sixty", 60},    {"seventy", 70}, {"eighty", 80},  {"ninety", 90}};
  const auto found = kWords.find(word);
  return found == kWords.end() ? std::nullopt : std::optional(found->second);
}

// "1:30" and "1:02:03".
std::optional<long> ClockSeconds(const std::string& words) {
  long seconds = 0;
  int fields = 0;
  std::string_view rest = words;
  for (size_t end = 0; end != std::string_view::npos && fields <= 3; ++fields) {
    end = rest.find(':');
    const auto number = Digits(rest.substr(0, end));
    if (!number || (fields > 0 && *number >= kMinute)) return {};
    seconds = seconds * kMinute + *number;
    rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
  }
  return fields == 2 || fields == 3 ? std::optional(seconds) : std::nullopt;
}

// How many seconds a unit has; 0 for a word that is none.
long UnitSeconds(std::string unit) {
  if (unit.size() > 1 && unit.back() == 's') unit.pop_back();
  if (unit == "second" || unit == "sec") return 1;
  if (unit == "minute" || unit == "min") return kMinute;
  return unit == "hour" ? kHour : 0;
}

// Whether `words` end with `end` and more stands before it; then `words` becomes what stands before.
bool TakeEnd(std::string& words, std::string_view end) {
  if (words.size() <= end.size() || words.compare(words.size() - end.size(), end.size(), end) != 0)
    return false;
  words.resize(words.size() - end.size());
  return true;
}

// Below a hundred: a word, or a ten and a one.
std::optional<long> Known(const std::string& words) {
  const size_t blank = words.find_first_of(" -");
  if (blank == std::string::npos) return Word(words);
  const auto tens = Word(words.substr(0, blank));
  const auto ones = Word(words.substr(blank + 1));
  const bool is_pair = tens && ones && *tens >= 20 && *tens % 10 == 0 && *ones >= 1 && *ones <= 9;
  return is_pair ? std::optional(*tens + *ones) : std::nullopt;
}

// How many there are of a unit: a number, a decimal fraction, "half a", "two and a half".
std::optional<double> Amount(std::string words) {
  if (words == "half" || words == "half a" || words == "half an") return 0.5;
  const double half = TakeEnd(words, " and a half") ? 0.5 : 0;
  if (const auto number = SpokenNumber(words)) return static_cast<double>(*number) + half;
  const size_t point = words.find('.');
  if (half != 0 || point == std::string::npos || point + 1 == words.size()) return {};
  const auto whole = Digits(std::string_view(words).substr(0, point));
  const auto fraction = Digits(std::string_view(words).substr(point + 1));
  if (!whole || !fraction) return {};
  return static_cast<double>(*whole) +
         static_cast<double>(*fraction) / std::pow(10, static_cast<double>(words.size() - point - 1));
}

// "1 hour and 5 minutes": amounts of units, one after the other, and maybe half of the last unit.
std::optional<double> UnitsSeconds(const std::string& words) {
  double seconds = 0;
  long unit = 0;
  std::string count;
  for (const std::string& word : SplitWords(words)) {
    const long next = UnitSeconds(word);
    if (next == 0) {
      if (!count.empty() || word != "and") count += (count.empty() ? "" : " ") + word;
      continue;
    }
    unit = next;
    const auto amount = Amount(count);
    if (!amount) return {};
    seconds += *amount * static_cast<double>(unit);
    count.clear();
  }
  if (count == "a half")
    return unit == 0 ? std::nullopt : std::optional(seconds + static_cast<double>(unit) / 2);
  return count.empty() && unit != 0 ? std::optional(seconds) : std::nullopt;
}

}  // namespace

std::optional<long> SpokenNumber(const std::string& words) {
  if (words.size() > kLongestWords) return {};
  if (const auto digits = Digits(words)) return digits;
  constexpr std::string_view kHundredWord = " hundred";
  const size_t at = words.find(kHundredWord);
  if (at == std::string::npos) return Known(words);
  const auto hundreds = Word(words.substr(0, at));
  if (!hundreds || *hundreds < 1 || *hundreds > 9) return {};
  std::string rest = words.substr(at + kHundredWord.size());
  if (rest.empty()) return *hundreds * kHundred;
  if (rest.compare(0, 5, " and ") == 0) rest.erase(0, 4);
  const auto below = rest[0] == ' ' ? Known(rest.substr(1)) : std::nullopt;
  return below ? std::optional(*hundreds * kHundred + *below) : std::nullopt;
}

std::optional<long> SpokenPlace(const std::string& words) {
  static const std::map<std::string, long> kPlaces = {
      {"first", 1},   {"second", 2}, {"third", 3}, {"fourth", 4}, {"fifth", 5},     {"sixth", 6},
      {"seventh", 7}, {"eighth", 8}, {"ninth", 9}, {"tenth", 10}, {"eleventh", 11}, {"twelfth", 12}};
  const auto found = kPlaces.find(words);
  if (found != kPlaces.end()) return found->second;
  std::string digits = words;
  for (const char* end : {"st", "nd", "rd", "th"}) {
    if (TakeEnd(digits, end)) return Digits(digits);
  }
  return {};
}

std::optional<long> SpokenSeconds(const std::string& words) {
  if (words.size() > kLongestWords) return {};
  if (const auto number = SpokenNumber(words)) return number;
  if (words.find(':') != std::string::npos) return ClockSeconds(words);
  auto seconds = UnitsSeconds(words);
  if (!seconds) seconds = Amount(words);
  return seconds ? std::optional(std::lround(*seconds)) : std::nullopt;
}

}  // namespace corvis::kit
