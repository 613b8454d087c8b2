// A private message bus for a test.
#ifndef CORVIS_TESTING_PRIVATE_BUS_H_
#define CORVIS_TESTING_PRIVATE_BUS_H_

#include <functional>
#include <memory>
#include <string>

#include "testing/process.h"

// Runs a dbus-daemon for this user only, with its socket in a private folder. The destructor ends and removes
// both.
class PrivateBus {
 public:
  PrivateBus();
  ~PrivateBus();
  const std::string& address() const { return address_; }
  // Ends the daemon, as if it had crashed.
  void Kill() { daemon_.reset(); }
  void Signal(int number) const { daemon_->Signal(number); }

 private:
  std::string folder_;
  std::string address_;
  std::unique_ptr<Process> daemon_;
};

// Runs the main loop until `condition` holds. Returns false after ten seconds.
bool WaitFor(const std::function<bool()>& condition);

#endif  // CORVIS_TESTING_PRIVATE_BUS_H_
