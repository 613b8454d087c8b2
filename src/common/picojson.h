// picojson with its assertion hook set to the library's own assertion. Include this before any other header
// that includes picojson.
#ifndef CORVIS_COMMON_PICOJSON_H_
#define CORVIS_COMMON_PICOJSON_H_

#ifdef picojson_h
#error "include common/picojson.h before any header that includes picojson"
#endif

#include "common/logger.h"

#define PICOJSON_ASSERT(expression) CORVIS_ASSERT(expression, "")

#include <picojson.h>

#endif  // CORVIS_COMMON_PICOJSON_H_
