// Lets the page's engine convert the numbers in JSON, because the C library's general conversion would be a
// twentieth of the module. Both JSON libraries pass only valid numbers.
#include <cmath>
#include <cstdlib>
#include <cstring>

#include "page.h"

#ifdef __wasm__

double strtod(const char* text, char** end) {
  const double number = page_number(text);
  if (end != nullptr) *end = const_cast<char*>(text) + (std::isnan(number) ? 0 : std::strlen(text));
  return number;
}

float strtof(const char* text, char** end) {
  return static_cast<float>(strtod(text, end));
}

long double strtold(const char* text, char** end) {
  return strtod(text, end);
}

#endif
