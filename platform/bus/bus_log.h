// The log tag for everything concerning the bus.
#ifndef NURVO_PLATFORM_BUS_BUS_LOG_H_
#define NURVO_PLATFORM_BUS_BUS_LOG_H_

#include "nurvo/log.h"

namespace nurvo {

constexpr const char* kBusTag = "NURVO_BUS";

}  // namespace nurvo

#endif  // NURVO_PLATFORM_BUS_BUS_LOG_H_
