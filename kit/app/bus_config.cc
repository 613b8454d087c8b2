// The configuration follows dbus-daemon(1).
#include "app/bus_config.h"

namespace corvis::kit {

const char* const kBusConfig =
    R"(<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
  "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>systemd:</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
  <limit name="max_incoming_bytes">1000000000</limit>
  <limit name="max_outgoing_bytes">1000000000</limit>
  <limit name="max_message_size">134217728</limit>
</busconfig>
)";

std::string BusAddress(const std::string& path) {
  // Escaping every byte is always valid, so no list of safe characters is needed.
  constexpr const char* kDigits = "0123456789abcdef";
  std::string address = "unix:path=";
  for (const char c : path) {
    const auto byte = static_cast<unsigned char>(c);
    address += {'%', kDigits[byte >> 4U], kDigits[byte & 0xfU]};
  }
  return address;
}

}  // namespace corvis::kit
