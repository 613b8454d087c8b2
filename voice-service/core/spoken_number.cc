// Words to numbers.
#include "core/spoken_number.h"

#include <charconv>
#include <map>
#include <sstream>
#include <string_view>

namespace corvis::voice {

namespace {

constexpr long kLargestNumber = 1'000'000;
constexpr long kMinute = 60;
constexpr long kHour = 60 * kMinute;

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
  std::istringstream stream(words);
  for (std::string field; std::getline(stream, field, ':'); ++fields) {
    const auto number = Digits(field);
    if (!number || (fields > 0 && *number >= kMinute)) return {};
    seconds = seconds * kMinute + *number;
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

}  // namespace

std::optional<long> SpokenNumber(const std::string& words) {
  if (const auto digits = Digits(words)) return digits;
  const size_t blank = words.find_first_of(" -");
  if (blank == std::string::npos) return Word(words);
  const auto tens = Word(words.substr(0, blank));
  const auto ones = Word(words.substr(blank + 1));
  const bool is_pair = tens && ones && *tens >= 20 && *ones >= 1 && *ones <= 9;
  return is_pair ? std::optional(*tens + *ones) : std::nullopt;
}

std::optional<long> SpokenSeconds(const std::string& words) {
  if (const auto number = SpokenNumber(words)) return number;
  if (words.find(':') != std::string::npos) return ClockSeconds(words);
  long seconds = 0;
  std::string count;
  std::istringstream stream(words);
  for (std::string word; stream >> word;) {
    const long unit = UnitSeconds(word);
    if (unit == 0) {
      if (word != "and") count += (count.empty() ? "" : " ") + word;
      continue;
    }
    const auto number = SpokenNumber(count);
    if (!number) return {};
    seconds += *number * unit;
    count.clear();
  }
  return count.empty() && !words.empty() ? std::optional(seconds) : std::nullopt;
}

}  // namespace corvis::voice
