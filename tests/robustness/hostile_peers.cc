// A stranger on the bus sends very many messages that are wrong in every way; a good command between them is
// answered as ever, and the page is the same at the end.
#include <functional>
#include <set>

#include "nurvo/message_port.h"
#include "robustness/hostile_messages.h"
#include "robustness/stage.h"
#include "service/bundles.h"
#include "service/wire.h"

namespace robustness {

namespace {

constexpr int kBetweenGoodOnes = 1000;
constexpr unsigned kSeed = 20'261'123;

// Plays the service with no book of who is owed what: hostile commands are answered, too.
class Listener {
 public:
  Listener() : port_(message_port_register_local_port(wire::kPort, OnMessage, this)) {
    Require(port_ > 0, "The service's port can't be opened.");
  }
  ~Listener() { message_port_unregister_local_port(port_); }
  Listener(const Listener&) = delete;
  Listener& operator=(const Listener&) = delete;

  // Sends a command that is not like any other and waits for its answer. The stranger plays the service's
  // start, too: when the page registered anew meanwhile, the command is sent again. Returns how often.
  int Ask(const std::string& name) {
    for (int tries = 1;; ++tries) {
      if (IsAnswered(name + ", " + std::to_string(tries))) return tries - 1;
    }
  }

  // Whether no good command was answered twice.
  bool is_each_answered_once() const {
    return std::set<std::string>(answers_.begin(), answers_.end()).size() == answers_.size();
  }
  int registrations() const { return registrations_; }
  size_t answers() const { return total_; }

 private:
  // False when the page registered anew instead.
  bool IsAnswered(const std::string& name) {
    const BundlePtr message =
        MakeBundle({{wire::kCommandKey, "ACTION_CUSTOM"}, {wire::kDataKey, EncodeEntries({{"once", name}})}});
    bool is_sent = false;
    const auto send = [&] {
      return is_sent = is_sent || message_port_send_message(kAppId, wire::kPort, message.get()) == 0;
    };
    Require(WaitUntil(send, kDeadline), "The page has gone.");
    const int before = registrations_;
    const std::string expected = R"({"once":")" + name + R"("})";
    const auto is_settled = [&] { return answers_.count(expected) > 0 || registrations_ > before; };
    Require(WaitUntil(is_settled, kDeadline), "The command " + name + " was not answered.");
    return answers_.count(expected) == 1;
  }

  static void OnMessage(int /*id*/, const char* /*app*/, const char* /*port*/, bool /*trusted*/,
                        bundle* message, void* listener) {
    auto& self = *static_cast<Listener*>(listener);
    const std::string word = TextOf(message, wire::kCommandKey);
    if (word == wire::kRegister) ++self.registrations_;
    if (word != wire::kResult && word != wire::kAppContext) return;
    ++self.total_;
    const std::string text = TextOf(message, wire::kDataKey);
    if (text.rfind(R"({"once":)", 0) == 0) self.answers_.insert(text);
  }

  int port_;
  int registrations_ = 0;
  size_t total_ = 0;
  std::multiset<std::string> answers_;
};

// Sends `count` messages, and runs `check` after each thousand.
void Attack(HostilePeer& peer, int count, const std::function<void(int)>& check) {
  for (int i = 1; i <= count; ++i) {
    peer.Send();
    if (i % kBetweenGoodOnes != 0) continue;
    peer.Flush();
    check(i);
  }
}

void AttackPage(int count) {
  Listener listener;
  Tv tv;
  Require(WaitUntil([&] { return listener.registrations() > 0; }, kDeadline), "The page did not register.");
  const pid_t process = Tv::WebProcess();
  const std::string token = tv.Evaluate("state.token");
  std::vector<std::string> actions;
  for (const ActionInfo& action : Actions()) actions.emplace_back(action.name);
  HostilePeer peer(kAppId, actions, kSeed);
  Usage before(process);
  int repeats = 0;
  Attack(peer, count, [&](int i) {
    repeats += listener.Ask("good " + std::to_string(i));
    if (i == kBetweenGoodOnes) before = Usage(process);
  });
  const Usage after(process);
  Require(Tv::WebProcess() == process && tv.Evaluate("state.token") == token, "The page is another one.");
  Require(listener.is_each_answered_once(), "A good command was answered twice.");
  after.RequireFewMoreDescriptors(before);
  std::printf(
      "%d hostile messages to the page (seed %u), %d good commands between them answered rightly (%d of them "
      "asked again, the page registered anew), page untouched, %zu answers in all, %d registrations, memory "
      "of the page %+ld KiB",
      count, kSeed, count / kBetweenGoodOnes, repeats, listener.answers(), listener.registrations(),
      after.memory - before.memory);
  std::fflush(stdout);
}

void AttackService(int count) {
  Service service;
  Tv tv;
  service.WaitForRegistration(1);
  const std::vector<std::string> words = {wire::kRegister, wire::kUnregister, wire::kResult,
                                          wire::kAppContext, wire::kPartialResult};
  HostilePeer peer(wire::kServiceId, words, kSeed);
  Attack(peer, count, [&](int i) { service.Converse("n", std::to_string(i)); });
  std::printf("; %d to the service, %d good commands between them answered rightly\n", count,
              count / kBetweenGoodOnes);
  for (const auto& [kind, times] : peer.sent()) std::printf("  %6d %s\n", times, kind.c_str());
}

}  // namespace

void RunHostilePeers(bool is_short) {
  const int count = is_short ? 2'000 : 100'000;
  setenv("NURVO_APP_ID", wire::kServiceId, 1);
  AttackPage(count);
  AttackService(count);
}

}  // namespace robustness
