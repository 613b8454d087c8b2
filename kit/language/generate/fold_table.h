// How letters are compared, by ICU's tables, as bytes that kit/language reads.
#ifndef CORVIS_KIT_LANGUAGE_GENERATE_FOLD_TABLE_H_
#define CORVIS_KIT_LANGUAGE_GENERATE_FOLD_TABLE_H_

#include <string>

// For each code point that isn't compared as it is, what it is compared as: case and compatibility forms
// folded (NFKC_Casefold), and decomposed; every kind of space, dash, apostrophe and quotation mark as one,
// digits as ASCII. Numbers in groups of seven bits, the lowest first: twice the distance from the last code
// point; then, for one letter, the zigzag of how its distance changed; or, when the first number is odd, a
// count and the letters.
enum class FoldedRange {
  kAll,
  // Without what nobody types: Arabic presentation forms, CJK compatibility ideographs and radicals, letters
  // in circles and squares, and mathematical ones. They are half of the table.
  kTyped
};
std::string FoldedLetters(FoldedRange range);

// Ranges of combining marks: the distance of the first from the last range's end, the length, the class.
std::string MarkClasses();

#endif  // CORVIS_KIT_LANGUAGE_GENERATE_FOLD_TABLE_H_
