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
  // `words` are those that the application `target` understands as commands. Throws Failure when the bus
  // can't be reached.
  HostilePeer(std::string target, std::vector<std::string> words, unsigned seed);

  // Sends one message of a random kind.
  void Send();
  // Returns once the bus has taken everything.
  void Flush();
  const std::map<std::string, int>& sent() const { return sent_; }

 private:
  struct Kind;
  static const Kind kKinds[];

  void SendStrangeSignature();
  void SendStrangeCall();
  void SendRandomBytes();
  void SendDamagedBundle();
  void SendSignedNonsense();
  void SendIncomplete();
  void SendUnknownAction();
  void SendStrangeData();
  void SendHugeMessage();
  void SendEvent();

  // A call of the target's port, with a sender's claim already in it when there is a payload.
  void Deliver(const std::string& payload);
  void Call(const char* path, const char* interface, const char* member, const char* signature,
            const std::string& text);
  std::string RandomBytes(size_t most);
  size_t Below(size_t limit) { return random_() % limit; }
  template <typename T, size_t N>
  const T& OneOf(const T (&choices)[N]) {
    return choices[Below(N)];
  }

  std::string target_;
  std::vector<std::string> words_;
  std::mt19937 random_;
  nurvo::BusPtr bus_;
  std::map<std::string, int> sent_;
};

}  // namespace robustness

#endif  // CORVIS_TESTS_ROBUSTNESS_HOSTILE_MESSAGES_H_
