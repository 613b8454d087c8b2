// Makes screenshots small enough that a report can contain a thousand of them.
#ifndef CORVIS_KIT_APP_COMPACT_PICTURE_H_
#define CORVIS_KIT_APP_COMPACT_PICTURE_H_

#include <cstddef>
#include <string>

#include "base/result.h"

namespace corvis::kit {

// Takes a PNG and returns a WebP of at most 960 by 960 pixels, whose quality is reduced until it has at most
// `most_bytes` or the lowest quality is reached.
Result<std::string> CompactPicture(const std::string& png, size_t most_bytes);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_APP_COMPACT_PICTURE_H_
