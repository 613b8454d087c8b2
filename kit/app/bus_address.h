// The address of a run's private bus.
#ifndef CORVIS_KIT_APP_BUS_ADDRESS_H_
#define CORVIS_KIT_APP_BUS_ADDRESS_H_

#include <string>

namespace corvis::kit {

// The D-Bus address of the socket at `path`, which may contain any bytes.
std::string BusAddress(const std::string& path);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_APP_BUS_ADDRESS_H_
