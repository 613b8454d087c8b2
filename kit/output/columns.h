// Fits texts into terminal columns. A character may be zero, one or two columns wide.
#ifndef CORVIS_KIT_OUTPUT_COLUMNS_H_
#define CORVIS_KIT_OUTPUT_COLUMNS_H_

#include <string>
#include <string_view>

namespace corvis::kit {

// The width of a single-line text in columns, not counting control characters.
int ColumnsOf(std::string_view text);

// Converts with ForTerminal and truncates to at most `columns`; a truncated text ends in an ellipsis.
std::string Cut(std::string_view text, int columns);

// Like Cut, padded with spaces to exactly `columns`.
std::string Padded(std::string_view text, int columns);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_OUTPUT_COLUMNS_H_
