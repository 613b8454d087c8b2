// Messages that no honest application would send to a port.
#ifndef CORVIS_TESTS_ROBUSTNESS_HOSTILE_MESSAGES_H_
#define CORVIS_TESTS_ROBUSTNESS_HOSTILE_MESSAGES_H_

#include <map>
#include <random>
#include <string>
#include <vector>

#include "nurvo_desktop/sd_bus_ptr.h"

namespace robustness {

// An application of its own on the bus. The same seed sends the same messages.
class HostilePeer {
 public:
  // `words` are those that the application `target` understands as commands. Throws when the bus can't be
  // reached.
  HostilePeer(std::string target, std::vector<std::string> words, unsigned seed);

  // Sends one message of a random kind.
  void Send();
  // Returns once the bus has taken everything.
  void Flush();
  const std::map<std::string, int>& sent() const { return sent_; }

 private:
  struct Kind;
  static const Kind kKinds[];

  // A delivery to the target's port, as from anybody.
  void Deliver(const std::string& payload);
  // Any call of the target: each type of the signature gets `text`, or a number.
  void Call(const std::string& path, const std::string& interface, const std::string& member,
            const std::string& signature, const std::string& text);
  void PublishStart();
  void Send(sd_bus_message* message);
  std::string Damaged(std::string text);
  std::string RandomBytes(size_t most);
  size_t Below(size_t limit) { return random_() % limit; }
  std::string OneOf(const std::vector<std::string>& choices) { return choices[Below(choices.size())]; }

  std::string target_;
  std::vector<std::string> words_;
  std::mt19937 random_;
  nurvo::BusPtr bus_;
  std::map<std::string, int> sent_;
};

}  // namespace robustness

#endif  // CORVIS_TESTS_ROBUSTNESS_HOSTILE_MESSAGES_H_
