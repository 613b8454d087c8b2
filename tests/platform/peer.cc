// The other application of the bus tests, and a process whose log is read.
//
//   peer serve PORT   opens PORT, prints "opened ID", and does what messages ask for in their entry "do":
//                     "echo" sends the message back, "publish" publishes it as the event that "event" names
//   peer lose PORT    opens PORT, waits for the bus to end, prints what still works then
//   peer log          logs one line of each priority
#include <glib.h>

#include <cstdio>
#include <string>

#include "nurvo/log.h"
#include "nurvo/message_port.h"
#include "nurvo_desktop/bus.h"
#include "nurvo_desktop/event_publish.h"
#include "testing/bundles.h"

namespace {

void OnMessage(int /*id*/, const char* app_id, const char* /*port*/, bool /*trusted*/, bundle* message,
               void* own_port) {
  const std::string wish = TextOf(message, "do");
  if (wish == "echo") message_port_send_message(app_id, static_cast<const char*>(own_port), message);
  if (wish == "publish") event_publish_app_event(TextOf(message, "event").c_str(), message);
}

int Open(char* port) {
  return message_port_register_local_port(port, OnMessage, port);
}

void Announce(int id) {
  std::printf("opened %d\n", id);
  std::fflush(stdout);
}

int Serve(char* port) {
  Announce(Open(port));
  while (true) g_main_context_iteration(nullptr, TRUE);
}

// Whether the main loop sleeps while nothing happens.
bool isCalm() {
  bool is_over = false;
  const auto end = [](gpointer flag) -> gboolean { return !(*static_cast<bool*>(flag) = true); };
  constexpr int kMilliseconds = 50;
  g_timeout_add(kMilliseconds, end, &is_over);
  int turns = 0;
  while (!is_over) {
    g_main_context_iteration(nullptr, TRUE);
    ++turns;
  }
  constexpr int kFewTurns = 10;
  return turns < kFewTurns;
}

// Prints whether the loop sleeps before and after the bus is lost, and what calls return then.
int Lose(char* port) {
  const int id = Open(port);
  const bool was_calm = isCalm();
  Announce(id);
  while (nurvo_bus() != nullptr) g_main_context_iteration(nullptr, TRUE);
  std::printf("%s %d %d %d\n", was_calm && isCalm() ? "calm" : "spinning",
              message_port_send_message("com.example.page", port, MakeBundle({}).get()),
              message_port_register_local_port("another", OnMessage, nullptr),
              event_publish_app_event("event", nullptr) < 0);
  return 0;
}

int Log() {
  for (int priority = NURVO_LOG_VERBOSE; priority <= NURVO_LOG_FATAL; ++priority) {
    log_print(priority, "TAG", "priority %d", priority);
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  const std::string mode = argc > 1 ? argv[1] : "";
  if (mode == "log") return Log();
  if (argc < 3) return 2;
  return mode == "lose" ? Lose(argv[2]) : Serve(argv[2]);
}
