// Reading and writing patterns.
#include "language/notation.h"

#include <algorithm>
#include <charconv>

#include "language/letters.h"
#include "language/suggestions.h"

namespace corvis::kit {

namespace {

constexpr int kDeepest = 16;
// Of one pattern, with its pieces written out.
constexpr size_t kMostParts = 4000;
constexpr long kGreatestNumber = 1'000'000;

const std::map<std::string_view, SlotKind>& SlotKinds() {
  static const std::map<std::string_view, SlotKind> kKinds = {
      {"number", SlotKind::kNumber}, {"amount", SlotKind::kAmount}, {"place", SlotKind::kPlace},
      {"month", SlotKind::kMonth},   {"year", SlotKind::kYear},     {"decade", SlotKind::kDecade},
      {"time", SlotKind::kTime},     {"date", SlotKind::kDate},     {"period", SlotKind::kPeriod}};
  return kKinds;
}

bool IsRange(std::string_view text) {
  return !text.empty() && text.find_first_not_of("0123456789-") == std::string_view::npos;
}

size_t CountParts(const std::vector<Pattern>& choices) {
  size_t count = 0;
  for (const Pattern& pattern : choices) {
    for (const Part& part : pattern) count += 1 + CountParts(part.choices);
  }
  return count;
}

// A choice that is all there is of one of several patterns is a choice of these as well: (a|(b|c)) is
// (a|b|c).
std::vector<Pattern> Flattened(std::vector<Pattern> choices) {
  std::vector<Pattern> flat;
  for (Pattern& pattern : choices) {
    const bool is_choice = pattern.size() == 1 && !pattern[0].choices.empty() && !pattern[0].is_optional;
    if (!is_choice) {
      flat.push_back(std::move(pattern));
      continue;
    }
    std::vector<Pattern> inner = std::move(pattern[0].choices);
    std::move(inner.begin(), inner.end(), std::back_inserter(flat));
  }
  return flat;
}

// One pattern is itself; several are a choice.
Pattern AsPattern(std::vector<Pattern> choices) {
  if (choices.size() == 1) return std::move(choices[0]);
  Part choice;
  choice.choices = std::move(choices);
  choice.is_spaced = true;
  return {std::move(choice)};
}

}  // namespace

void PatternReader::Fail(const std::string& message) {
  if (!HasFailed()) message_ = message;
}

Pattern PatternReader::Read() {
  return AsPattern(ReadChoices(0, 0));
}

std::vector<Pattern> PatternReader::ReadChoices(char end, int depth) {
  std::vector<Pattern> choices;
  while (true) {
    choices.push_back(ReadSequence(depth));
    if (choices.back().empty()) Fail("Expected words.");
    if (HasFailed() || Peek() != '|') break;
    ++at_;
  }
  if (!HasFailed() && Peek() != end)
    Fail(end == 0 ? std::string("Unexpected ") + Peek() + "." : std::string("Missing ") + end + ".");
  if (!HasFailed() && end != 0) ++at_;
  return Flattened(std::move(choices));
}

Pattern PatternReader::ReadSequence(int depth) {
  Pattern pattern;
  bool is_spaced = true;
  while (!HasFailed() && at_ < text_.size()) {
    if (Peek() == ' ') {
      is_spaced = true;
      ++at_;
      continue;
    }
    if (Peek() == '|' || Peek() == ')' || Peek() == ']') break;
    pattern.push_back(ReadPart(depth));
    pattern.back().is_spaced = is_spaced;
    is_spaced = false;
    if (++parts_ > kMostParts) Fail("The pattern is too long.");
  }
  return pattern;
}

Part PatternReader::ReadPart(int depth) {
  Part part;
  const char mark = Peek();
  if (mark == '{') return ReadSlot();
  if (mark == '<') return ReadPiece();
  if (mark == '(' || mark == '[') {
    if (depth == kDeepest) Fail("Too many brackets within brackets.");
    if (HasFailed()) return part;
    ++at_;
    part.is_optional = mark == '[';
    part.choices = ReadChoices(mark == '(' ? ')' : ']', depth + 1);
    return part;
  }
  const size_t end = std::min(text_.find_first_of("()[]{}<>| ", at_), text_.size());
  if (end == at_) Fail(std::string("Unexpected ") + mark + ".");
  part.text = text_.substr(at_, end - at_);
  at_ = end;
  return part;
}

Part PatternReader::ReadSlot() {
  Part part;
  const size_t close = text_.find('}', at_);
  if (close == std::string_view::npos) {
    Fail("Missing }.");
    return part;
  }
  const std::string_view inner = text_.substr(at_ + 1, close - at_ - 1);
  const size_t colon = inner.find(':');
  part.slot.name = inner.substr(0, colon);
  if (part.slot.name.empty() || part.slot.name.find_first_of(" .={<") != std::string::npos) {
    Fail("Expected the name of a slot, for example {title}.");
  } else if (colon != std::string_view::npos) {
    SetKind(part.slot, inner.substr(colon + 1));
  } else if (IsRange(inner)) {
    SetRange(part.slot, inner);
  } else if (const auto kind = SlotKinds().find(inner); kind != SlotKinds().end()) {
    part.slot.kind = kind->second;
    part.slot.most = kGreatestNumber;
  }
  if (!HasFailed()) at_ = close + 1;
  return part;
}

void PatternReader::SetKind(Slot& slot, std::string_view kind) {
  if (IsRange(kind)) return SetRange(slot, kind);
  const auto found = SlotKinds().find(kind);
  slot.most = kGreatestNumber;
  if (found != SlotKinds().end()) {
    slot.kind = found->second;
    return;
  }
  std::vector<std::string> names;
  for (const auto& [name, ignored] : SlotKinds()) names.emplace_back(name);
  Fail("Unknown kind of slot \"" + std::string(kind) + "\"." + DidYouMean(kind, names));
}

void PatternReader::SetRange(Slot& slot, std::string_view range) {
  const char* const end = range.data() + range.size();
  const auto least = std::from_chars(range.data(), end, slot.least);
  const bool has_dash = least.ec == std::errc() && least.ptr != end && *least.ptr == '-';
  const auto most = has_dash ? std::from_chars(least.ptr + 1, end, slot.most) : least;
  slot.kind = SlotKind::kNumber;
  const bool is_right = has_dash && most.ec == std::errc() && most.ptr == end && slot.least <= slot.most &&
                        slot.most <= kGreatestNumber;
  if (!is_right) Fail("Expected a range of numbers, for example {1-99}.");
}

Part PatternReader::ReadPiece() {
  Part part;
  const size_t close = text_.find('>', at_);
  const std::string name(close == std::string_view::npos ? "" : text_.substr(at_ + 1, close - at_ - 1));
  const auto found = pieces_.find(name);
  if (name.empty()) {
    Fail("Expected the name of a piece, for example <movie>.");
  } else if (found == pieces_.end()) {
    std::vector<std::string> names;
    for (const auto& [other, ignored] : pieces_) names.push_back(other);
    Fail("Unknown piece <" + name + ">. Define it in [pieces], above its use." + DidYouMean(name, names));
  } else {
    part.choices = Flattened({found->second});
    parts_ += CountParts(part.choices);
    at_ = close + 1;
  }
  return part;
}

std::string SlotName(const Slot& slot) {
  return "{" + slot.name + "}";
}

namespace {

// Encloses a pair of particles until it is known what is in front of them.
constexpr char kPairBegin = '\1', kPairEnd = '\2';

std::string MarkedText(const std::string& text) {
  return text.find('/') == std::string::npos ? text : kPairBegin + text + kPairEnd;
}

// The text with the particle of each pair that fits.
std::string WithParticles(const std::string& text) {
  std::string result;
  for (size_t at = 0; at < text.size();) {
    const size_t begin = std::min(text.find(kPairBegin, at), text.size());
    const size_t end = text.find(kPairEnd, begin);
    result.append(text, at, begin - at);
    if (end == std::string::npos) break;
    const size_t slash = text.find('/', begin);
    const auto letters = LetterFolding().Fold(result);
    const bool is_first = !letters.empty() && MayFollow(letters.back().code, AfterEnding::kConsonant);
    result += is_first ? text.substr(begin + 1, slash - begin - 1) : text.substr(slash + 1, end - slash - 1);
    at = end + 1;
  }
  return result;
}

std::vector<std::string> ExpandMarked(const Pattern& pattern, size_t limit, const SlotText& slot_text) {
  std::vector<std::string> texts = {""};
  for (const Part& part : pattern) {
    std::vector<std::string> wordings;
    if (part.choices.empty()) wordings = {part.IsSlot() ? slot_text(part.slot) : MarkedText(part.text)};
    for (const Pattern& choice : part.choices) {
      if (wordings.size() >= limit) break;
      for (std::string& text : ExpandMarked(choice, limit, slot_text)) wordings.push_back(std::move(text));
    }
    if (part.is_optional) wordings.emplace_back();
    std::vector<std::string> longer;
    for (const std::string& text : texts) {
      for (const std::string& wording : wordings) {
        if (longer.size() >= limit) break;
        const bool has_space = part.is_spaced && !text.empty() && !wording.empty();
        longer.push_back(text);
        if (has_space) longer.back() += ' ';
        longer.back() += wording;
      }
    }
    texts = std::move(longer);
  }
  return texts;
}

std::string SampleMarked(const Pattern& pattern, const SlotText& slot_text) {
  std::string text;
  for (const Part& part : pattern) {
    if (part.is_optional) continue;
    if (part.is_spaced && !text.empty()) text += ' ';
    text += part.IsSlot() ? slot_text(part.slot) : MarkedText(part.text);
    if (!part.choices.empty()) text += SampleMarked(part.choices[0], slot_text);
  }
  return text;
}

}  // namespace

std::vector<std::string> Expand(const Pattern& pattern, size_t limit, const SlotText& slot_text) {
  std::vector<std::string> texts = ExpandMarked(pattern, limit, slot_text);
  for (std::string& text : texts) text = WithParticles(text);
  return texts;
}

std::string SampleOf(const Pattern& pattern, const SlotText& slot_text) {
  return WithParticles(SampleMarked(pattern, slot_text));
}

}  // namespace corvis::kit
