// What can be said in a language, and what it becomes.
#ifndef CORVIS_KIT_LANGUAGE_PHRASEBOOK_H_
#define CORVIS_KIT_LANGUAGE_PHRASEBOOK_H_

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/result.h"
#include "language/grammar.h"
#include "language/phrase_file.h"

namespace corvis::kit {

// An item on the screen, by its title or by its place in the list, from 1.
struct WantedItem {
  std::string title;
  long place = 0;
};

// What a text was understood as.
struct Understood {
  Command command;
  // When it is about an item, the command is complete only with this item's number.
  std::optional<WantedItem> item;
  // The index of the phrase, and what its slots took.
  size_t phrase = 0;
  std::vector<FilledSlot> slots;

  void SetItem(long number);
};

// A phrase for people, as it is written in its file.
struct Phrase {
  std::string pattern;
  // The action and its data.
  std::string becomes;
  PhrasePlace place;
};

// Why a text was or was not understood.
struct Explanation {
  std::optional<Understood> understood;
  struct Other {
    size_t phrase;
    std::string reason;
  };
  // Phrases that match as well, or nearly, the closest first.
  std::vector<Other> others;
};

// All that can be said in one language. A copy is cheap.
class Phrasebook {
 public:
  // Nobody says more bytes; longer texts are pasted.
  static constexpr size_t kLongestText = size_t{16} << 10U;

  // Reads phrase files of one language, those that win first. Adds what is wrong with them to `mistakes`.
  static Phrasebook Read(const std::vector<PhraseFile>& files, std::vector<PhraseMistake>& mistakes);

  // The phrases of a language, and before them those of the files. Without a tag, the language is that of the
  // first file that names one, or else English. A tag that is not built in needs a file that brings the
  // language.
  static Result<Phrasebook> Open(const std::string& tag, const std::vector<PhraseFile>& files);

  // Read when it is first asked for.
  static const Phrasebook& English();

  const std::string& tag() const { return grammar_->tag; }
  const std::string& name() const { return grammar_->name; }

  // What the text becomes; nothing when no phrase matches it, or when it is longer than anybody speaks. Of
  // several phrases that match, the one with more exact words wins: those of its pattern, of numbers and of
  // times; then the earlier one. Case, punctuation at the ends of words, spaces and polite words around it
  // don't count.
  std::optional<Understood> Understand(std::string_view text) const;

  // A text that is understood and close to this one, with the same words in its slots where they can be kept;
  // or empty.
  std::string Suggest(std::string_view text) const;

  // "Unknown phrase "pley". Did you mean "play"?"
  std::string UnknownPhrase(const std::string& text) const;

  Explanation Explain(std::string_view text) const;

  // Phrases that no text reaches, and texts that two phrases take with equally many exact words.
  std::vector<PhraseMistake> Check() const;

  std::vector<Phrase> phrases() const;
  // The pieces in their patterns, with the patterns that they stand for.
  const std::map<std::string, std::string>& pieces() const { return grammar_->pieces; }
  // For each phrase one text.
  std::vector<std::string> Samples() const;
  // A text that becomes this action; empty when no phrase does.
  std::string SampleFor(std::string_view action) const;

  // The text as titles are compared: equal for titles that differ in case, punctuation or the form of their
  // letters.
  std::string Folded(std::string_view text) const;
  // The text without polite words around it: the title that somebody may mean who says nothing but a title.
  std::string WithoutPoliteness(std::string_view text) const;

 private:
  explicit Phrasebook(Grammar grammar) : grammar_(std::make_shared<const Grammar>(std::move(grammar))) {}

  std::shared_ptr<const Grammar> grammar_;
};

// The tags of the languages that are built in.
std::vector<std::string> BuiltInLanguages();

// The built-in language of a locale such as "de_AT.UTF-8", or of a tag such as "de-AT"; empty when there is
// none.
std::string BuiltInLanguage(std::string_view locale);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_LANGUAGE_PHRASEBOOK_H_
