// Spells numbers by the rule-based number formats and takes apart what they have in common.
#include "language_words.h"

#include <unicode/dtfmtsym.h>
#include <unicode/rbnf.h>

#include <algorithm>
#include <functional>
#include <map>
#include <memory>
#include <set>

namespace {

using Words = std::set<std::string>;

constexpr int kHundred = 100;

std::string Utf8(const icu::UnicodeString& text) {
  std::string utf8;
  // Soft hyphens mark where long words may be broken.
  icu::UnicodeString(text).findAndReplace(icu::UnicodeString(0xAD), {}).toUTF8String(utf8);
  return utf8;
}

// Every way in which a language spells a number: by all rule sets of its formats, of all its regions.
class Speller {
 public:
  Speller(const std::string& language, icu::URBNFRuleSetTag kind) {
    int32_t count = 0;
    const icu::Locale* locales = icu::Locale::getAvailableLocales(count);
    std::set<std::string> known;
    for (int32_t i = 0; i < count; ++i) {
      if (language != locales[i].getLanguage()) continue;
      UErrorCode error = U_ZERO_ERROR;
      auto format = std::make_unique<icu::RuleBasedNumberFormat>(kind, locales[i], error);
      if (U_SUCCESS(error) && known.insert(Utf8(format->getRules())).second) {
        formats_.push_back(std::move(format));
      }
    }
  }

  // By the rule sets whose name holds one of `names`.
  Words Spell(int number, const std::vector<const char*>& names) const {
    Words words;
    for (const auto& format : formats_) {
      for (int32_t i = 0; i < format->getNumberOfRuleSetNames(); ++i) {
        const icu::UnicodeString name = format->getRuleSetName(i);
        const auto has = [&](const char* part) { return name.indexOf(part) >= 0; };
        if (!has("-year") && std::any_of(names.begin(), names.end(), has))
          words.insert(By(*format, name, number));
      }
    }
    return words;
  }

 private:
  static std::string By(const icu::RuleBasedNumberFormat& format, const icu::UnicodeString& rules,
                        int number) {
    icu::UnicodeString text;
    icu::FieldPosition position;
    UErrorCode error = U_ZERO_ERROR;
    return Utf8(format.format(number, rules, text, position, error));
  }

  std::vector<std::unique_ptr<icu::RuleBasedNumberFormat>> formats_;
};

bool StartsWith(const std::string& text, const std::string& begin) {
  return !begin.empty() && text.compare(0, begin.size(), begin) == 0;
}

// "one -> 1", "erste[m|n|r|s] -> 1".
std::string Line(const Words& words, int value) {
  std::map<std::string, std::string> endings;
  std::string shortest;
  for (const std::string& word : words) {
    if (!StartsWith(word, shortest)) {
      shortest = word;
      endings[shortest];
      continue;
    }
    std::string& list = endings[shortest];
    list += (list.empty() ? "" : "|") + word.substr(shortest.size());
  }
  std::string line;
  for (const auto& [word, list] : endings) {
    line += (line.empty() ? "" : "|") + word + (list.empty() ? "" : "[" + list + "]");
  }
  return line + " -> " + std::to_string(value);
}

bool EndsWith(const std::string& text, const std::string& end) {
  return text.size() > end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

// What comes before the words below a hundred, in the words for numbers from a hundred on: "two hundred and
// ". Of several, the one that explains most is taken first. Leaves in `spelled` what isn't explained.
Words Beginnings(std::map<std::string, int>& spelled, const std::vector<Words>& below) {
  Words beginnings;
  while (true) {
    std::map<std::string, std::vector<std::string>> explained;
    for (const auto& [text, number] : spelled) {
      for (const std::string& end : below[number % kHundred]) {
        if (EndsWith(text, end)) explained[text.substr(0, text.size() - end.size())].push_back(text);
      }
    }
    const auto best = std::max_element(explained.begin(), explained.end(), [](const auto& a, const auto& b) {
      return a.second.size() < b.second.size();
    });
    if (best == explained.end() || best->second.size() < 2) return beginnings;
    beginnings.insert(best->first);
    for (const std::string& text : best->second) spelled.erase(text);
  }
}

void AppendNumbers(const std::string& language, std::vector<std::string>& lines) {
  const Speller speller(language, icu::URBNF_SPELLOUT);
  const auto spell = [&](int number) { return speller.Spell(number, {"numbering", "cardinal"}); };
  std::vector<Words> below;
  for (int number = 0; number < kHundred; ++number) {
    below.push_back(spell(number));
    lines.push_back(Line(below.back(), number));
  }
  for (int hundred = kHundred; hundred < 10 * kHundred; hundred += kHundred) {
    lines.push_back(Line(spell(hundred), hundred));
    std::map<std::string, int> spelled;
    for (int number = hundred + 1; number < hundred + kHundred; ++number) {
      for (const std::string& text : spell(number)) spelled[text] = number;
    }
    for (const std::string& beginning : Beginnings(spelled, below)) {
      lines.push_back(beginning + "{1-99} -> " + std::to_string(hundred));
    }
    for (const auto& [text, number] : spelled) lines.push_back(Line({text}, number));
  }
}

// The digits that end with "st", "nd" and so on.
void AppendPlaces(const std::string& language, std::vector<std::string>& lines) {
  const Speller speller(language, icu::URBNF_SPELLOUT);
  const Speller digits(language, icu::URBNF_ORDINAL);
  Words ends;
  for (int number = 1; number < kHundred; ++number) {
    lines.push_back(Line(speller.Spell(number, {"ordinal"}), number));
    for (const std::string& text : digits.Spell(number, {"ordinal"})) {
      ends.insert(text.substr(std::to_string(number).size()));
    }
  }
  for (const std::string& end : ends) lines.push_back("{1-9999}" + end + " -> 0");
}

void AppendMonths(const std::string& language, std::vector<std::string>& lines) {
  UErrorCode error = U_ZERO_ERROR;
  const icu::DateFormatSymbols symbols(icu::Locale(language.c_str()), error);
  std::map<int, Words> months;
  for (const auto context : {icu::DateFormatSymbols::FORMAT, icu::DateFormatSymbols::STANDALONE}) {
    int32_t count = 0;
    const icu::UnicodeString* names = symbols.getMonths(count, context, icu::DateFormatSymbols::WIDE);
    for (int i = 0; i < count; ++i) months[i + 1].insert(Utf8(names[i]));
  }
  for (const auto& [month, names] : months) lines.push_back(Line(names, month));
}

}  // namespace

std::vector<std::string> LanguageWords(const std::string& language) {
  std::vector<std::string> lines = {"[numbers]"};
  AppendNumbers(language, lines);
  lines.emplace_back("[places]");
  AppendPlaces(language, lines);
  lines.emplace_back("[months]");
  AppendMonths(language, lines);
  return lines;
}
