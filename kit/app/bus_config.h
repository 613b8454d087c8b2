// The configuration of a run's private bus.
#ifndef CORVIS_KIT_APP_BUS_CONFIG_H_
#define CORVIS_KIT_APP_BUS_CONFIG_H_

#include <string>

namespace corvis::kit {

// What dbus-daemon reads: a bus that starts no services, for this user alone, on a socket that it is handed
// (as by systemd's socket activation).
extern const char* const kBusConfig;

// The address of the bus whose socket is the file `path`, which may hold any bytes.
std::string BusAddress(const std::string& path);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_APP_BUS_CONFIG_H_
