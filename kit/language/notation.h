// The notation of phrases: (a|b) is one of several wordings, [a] may be left out, {slot} is for the viewer to
// fill in.
#ifndef CORVIS_KIT_LANGUAGE_NOTATION_H_
#define CORVIS_KIT_LANGUAGE_NOTATION_H_

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace corvis::kit {

// What fits into a slot.
enum class SlotKind {
  kWords,   // any words
  kNumber,  // a whole number
  kAmount,  // a number, maybe with a fraction
  kPlace,   // a place in a row: "third"
  kMonth,
  kYear,    // four digits
  kDecade,  // the first year of a decade: 1990, 90 or "ninety"
  kTime,    // what the section [time] describes, or 1:30 or 1:02:03
  kDate,    // what the section [dates] describes, or 1990-05-17
  kPeriod,  // such a date that has a first and a last year
};

struct Slot {
  std::string name;
  SlotKind kind = SlotKind::kWords;
  // The least and the greatest number that fit.
  long least = 0;
  long most = 0;
};

struct Part;
using Pattern = std::vector<Part>;

// A text, a slot, or a choice of patterns.
struct Part {
  std::string text;
  Slot slot;
  std::vector<Pattern> choices;
  bool is_optional = false;
  // Whether a space is in front of it; otherwise it goes on with a word.
  bool is_spaced = false;

  bool IsSlot() const { return !slot.name.empty(); }
};

// Patterns that others contain as <name>.
using Pieces = std::map<std::string, Pattern>;

// Reads one pattern. After an error `message` is a sentence, and `at` where it is in the text.
class PatternReader {
 public:
  PatternReader(std::string_view text, const Pieces& pieces) : text_(text), pieces_(pieces) {}
  Pattern Read();
  const std::string& message() const { return message_; }
  size_t at() const { return at_; }

 private:
  std::vector<Pattern> ReadChoices(char end, int depth);
  Pattern ReadSequence(int depth);
  Part ReadPart(int depth);
  Part ReadSlot();
  Part ReadPiece();
  void SetKind(Slot& slot, std::string_view kind);
  void SetRange(Slot& slot, std::string_view range);
  char Peek() const { return at_ < text_.size() ? text_[at_] : '\0'; }
  void Fail(const std::string& message);
  bool HasFailed() const { return !message_.empty(); }

  std::string_view text_;
  const Pieces& pieces_;
  size_t at_ = 0;
  size_t parts_ = 0;
  std::string message_;
};

using SlotText = std::function<std::string(const Slot& slot)>;

// All texts that the pattern describes, at most `limit`; those that leave fewest words out first.
std::vector<std::string> Expand(const Pattern& pattern, size_t limit, const SlotText& slot_text);

// The shortest of them: the first of every choice, nothing that may be left out.
std::string SampleOf(const Pattern& pattern, const SlotText& slot_text);

// "{name}".
std::string SlotName(const Slot& slot);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_LANGUAGE_NOTATION_H_
