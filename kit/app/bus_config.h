// The configuration of a run's private bus.
#ifndef CORVIS_KIT_APP_BUS_CONFIG_H_
#define CORVIS_KIT_APP_BUS_CONFIG_H_

#include <string>

namespace corvis::kit {

// A dbus-daemon configuration: a bus for this user only, which activates no services and listens on an
// inherited socket (systemd socket activation).
extern const char* const kBusConfig;

// The D-Bus address of the socket at `path`, which may contain any bytes.
std::string BusAddress(const std::string& path);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_APP_BUS_CONFIG_H_
