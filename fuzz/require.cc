// Reports findings.
#include "require.h"

#include <cstdio>
#include <cstdlib>

void Require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "does not hold: %s\n", what);
  std::abort();
}
