// The platform's bus in memory. Messages, events and departures of the applications in one page are queued
// until they are delivered. Single-threaded; the library and the voice service are two applications on it.
#ifndef CORVIS_NPM_MODULE_PLATFORM_BUS_H_
#define CORVIS_NPM_MODULE_PLATFORM_BUS_H_

#include <deque>
#include <functional>
#include <map>
#include <set>
#include <string>

#include "nurvo/app_event.h"
#include "nurvo/message_port.h"
#include "nurvo_desktop/app_watch.h"

struct event_handler {
  std::string app_id;
  std::string event;
  event_cb callback;
  void* user_data;
};

struct app_watch {
  std::string app_id;
  app_watch_cb callback;
  void* user_data;
};

namespace corvis::simulator {

class Bus {
 public:
  static Bus& Get();

  // The id of the application whose code is running; ports and sends belong to it.
  const std::string& acting() const { return acting_; }

  // These implement the functions of message_port.h.
  int Open(const std::string& name, message_port_message_cb callback, void* user_data);
  int Close(int port_id);
  int Send(const std::string& app_id, const std::string& port, bundle* message);
  // An application counts as running as long as it has a port.
  bool IsRunning(const std::string& app_id) const;

  void Subscribe(event_handler* handler) { handlers_.insert(handler); }
  bool Unsubscribe(event_handler* handler) { return handlers_.erase(handler) == 1; }
  void Publish(const std::string& event, bundle* data);

  void Watch(app_watch* watch) { watches_.insert(watch); }
  bool Unwatch(app_watch* watch) { return watches_.erase(watch) == 1; }

  // Appends a delivery to the queue.
  void Queue(std::function<void()> delivery) { waiting_.push_back(std::move(delivery)); }
  // Runs the first queued delivery. Returns false if the queue is empty.
  bool DeliverNext();

 private:
  friend class Acting;

  struct Port {
    std::string app_id;
    std::string name;
    message_port_message_cb callback;
    void* user_data;
  };

  void Deliver(const std::string& from, const std::string& to, const std::string& port,
               const std::string& text);
  void AnnounceChange(const std::string& app_id, bool is_running);

  std::string acting_;
  int last_port_id_ = 0;
  std::map<int, Port> ports_;
  std::set<event_handler*> handlers_;
  std::set<app_watch*> watches_;
  std::deque<std::function<void()>> waiting_;
};

// Makes an application the acting one for the lifetime of this object.
class Acting {
 public:
  explicit Acting(std::string app_id);
  ~Acting();
  Acting(const Acting&) = delete;
  Acting& operator=(const Acting&) = delete;

 private:
  std::string before_;
};

}  // namespace corvis::simulator

#endif  // CORVIS_NPM_MODULE_PLATFORM_BUS_H_
