// Computes widths from the Unicode properties of each character.
#include "output/columns.h"

#include "output/characters.h"
#include "output/text_forms.h"

namespace corvis::kit {

namespace {

int WidthOf(gunichar code) {
  if (g_unichar_iszerowidth(code) != FALSE) return 0;
  return g_unichar_iswide(code) != FALSE ? 2 : 1;
}

}  // namespace

int ColumnsOf(std::string_view text) {
  int columns = 0;
  while (!text.empty()) columns += WidthOf(TakeCharacter(text).code);
  return columns;
}

std::string Cut(std::string_view text, int columns) {
  std::string line = ForTerminal(text);
  if (ColumnsOf(line) <= columns) return line;
  std::string_view rest = line;
  std::string cut;
  // One column is reserved for the ellipsis.
  for (int left = columns - 1;;) {
    const Character next = TakeCharacter(rest);
    left -= WidthOf(next.code);
    if (left < 0) return cut + "…";
    cut += next.bytes;
  }
}

std::string Padded(std::string_view text, int columns) {
  std::string line = Cut(text, columns);
  const int taken = ColumnsOf(line);
  return line.append(static_cast<size_t>(columns - taken), ' ');
}

}  // namespace corvis::kit
