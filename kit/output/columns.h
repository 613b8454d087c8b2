// Texts in the columns of a terminal, where a character may take no place, one or two.
#ifndef CORVIS_KIT_OUTPUT_COLUMNS_H_
#define CORVIS_KIT_OUTPUT_COLUMNS_H_

#include <string>
#include <string_view>

namespace corvis::kit {

// How many columns a text takes on one line, without control characters.
int ColumnsOf(std::string_view text);

// The text as ForTerminal shows it, cut to at most so many columns, with an ellipsis where it was longer.
std::string Cut(std::string_view text, int columns);

// The same with spaces after it, so that it takes exactly so many columns.
std::string Padded(std::string_view text, int columns);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_OUTPUT_COLUMNS_H_
