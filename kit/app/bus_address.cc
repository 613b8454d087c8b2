// Escapes a path for a D-Bus address.
#include "app/bus_address.h"

namespace corvis::kit {

std::string BusAddress(const std::string& path) {
  // Hexadecimal is valid for every byte.
  constexpr const char* kDigits = "0123456789abcdef";
  std::string address = "unix:path=";
  for (const char c : path) {
    const auto byte = static_cast<unsigned char>(c);
    address += {'%', kDigits[byte >> 4U], kDigits[byte & 0xfU]};
  }
  return address;
}

}  // namespace corvis::kit
