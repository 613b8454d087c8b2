// The remote end of the bare echo: replies with a payload of the requested size. Runs until it is killed.
#include "native/echo_bus.h"

namespace {

int OnDelivery(sd_bus_message* message, void* /*data*/, sd_bus_error* /*error*/) {
  if (sd_bus_message_is_method_call(message, bench::kEchoInterface, bench::kEchoMember) <= 0) return 0;
  unsigned wanted = 0;
  const void* payload = nullptr;
  size_t size = 0;
  bench::Checked(sd_bus_message_read(message, "u", &wanted), "Reading");
  bench::Checked(sd_bus_message_read_array(message, 'y', &payload, &size), "Reading");
  bench::SendEcho(sd_bus_message_get_bus(message), bench::kEchoCaller, 0, std::string(wanted, 'e'));
  return 1;
}

}  // namespace

int main() {
  sd_bus* const bus = bench::OpenEchoBus(bench::kEchoPeer, OnDelivery, nullptr);
  for (;;) bench::Turn(bus);
}
