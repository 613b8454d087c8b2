// Everything that phrase files say about a language, ready for matching.
#ifndef CORVIS_KIT_LANGUAGE_GRAMMAR_H_
#define CORVIS_KIT_LANGUAGE_GRAMMAR_H_

#include <map>
#include <string>
#include <vector>

#include "language/actions.h"
#include "language/automaton.h"
#include "language/word_list.h"

namespace corvis::kit {

// Where a row is written.
struct PhrasePlace {
  std::string file;
  int line = 0;
};

// A pattern of [phrases], and what it becomes.
struct PhraseRow {
  Pattern pattern;
  // As it is written in the file.
  std::string written;
  // The action, and its data with slots in it: a text, or the entries of a bundle.
  std::string action;
  std::string data;
  Entries entries;
  bool is_bundle = false;
  // The slots that name an item on the screen or hold what is searched for; empty for none.
  std::string words_slot;
  std::string place_slot;
  PhrasePlace place;
};

// A pattern of [search] without the slots for any words at its ends, and the search terms that it gives.
struct SearchRow {
  // The names of these slots; empty for none.
  std::string before;
  std::string after;
  // Empty for words that mean nothing by themselves.
  Entries terms;
  // Whether it counts only where no title has begun.
  bool is_unless_title = false;
};

// 3600 {hours} + 60 {minutes} + 30.
struct Term {
  double factor = 0;
  // Empty for the factor alone.
  std::string slot;
};
using Sum = std::vector<Term>;

// What a slot took: the words as they were said, and what they mean.
struct FilledSlot {
  std::string name;
  std::string said;
  std::string value;
  // Of a date: its last year or day.
  std::string last;
};

struct Grammar {
  std::string tag;
  std::string name;
  LetterFolding folding;
  Vocabulary vocabulary;
  WordList numbers;
  WordList amounts;
  WordList places;
  WordList months;
  Automaton politeness;
  Automaton time;
  std::vector<Sum> time_sums;
  Automaton dates;
  std::vector<std::string> date_texts;
  Automaton search;
  std::vector<SearchRow> search_rows;
  Automaton phrases;
  // Rows that come first win.
  std::vector<PhraseRow> rows;
  // The pieces of patterns as they are written.
  std::map<std::string, std::string> pieces;
  // What may be said in a slot, by its name.
  std::map<std::string, std::string> examples;

  // An example of what may be said in the slot; its name in braces where there is none.
  std::string Example(const Slot& slot) const;
};

// The text with the values of slots in place of their names in braces; slots without a value go.
std::string Fill(const std::string& text, const Entries& values);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_LANGUAGE_GRAMMAR_H_
