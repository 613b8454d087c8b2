// A stranger on the bus sends very many messages that no honest application would; a good command between
// them is answered as ever, and the page is the same at the end.
#include <functional>
#include <map>
#include <random>
#include <set>
#include <utility>

#include "nurvo/message_port.h"
#include "robustness/stage.h"
#include "service/bundles.h"
#include "service/wire.h"
#include "testing/signed_bundle.h"
#include "testing/split.h"

namespace robustness {

namespace {

constexpr int kBetweenGoodOnes = 1000;
constexpr unsigned kSeed = 20'261'123;

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

constexpr const char* kPath = "/nurvo/port/com_2eport_2evif_2evoiceinteraction";
constexpr const char* kInterface = "nurvo.MessagePort";

std::string Message(const std::string& command, const std::string& data) {
  return EncodeEntries({{wire::kCommandKey, command}, {wire::kDataKey, data}});
}

std::vector<std::string> With(std::vector<std::string> texts, const std::vector<std::string>& more) {
  texts.insert(texts.end(), more.begin(), more.end());
  return texts;
}

struct HostilePeer::Kind {
  const char* name;
  // How often it is among 1,000 messages.
  size_t weight;
  void (*send)(HostilePeer& peer);
};

const HostilePeer::Kind HostilePeer::kKinds[] = {
    {"strange signatures", 100,
     [](HostilePeer& peer) {
       const auto signatures = Split(",s,ss,sss,ssv,sst,tss,ssa,a,v,ssat,vvvv", ',');
       peer.Call(kPath, kInterface, "Deliver", peer.OneOf(signatures), std::string(peer.Below(300), 'x'));
     }},
    {"strange calls", 100,
     [](HostilePeer& peer) {
       const auto paths = Split("/ /nurvo /nurvo/port /nurvo/port/_ /nurvo/port/other", ' ');
       const auto interfaces =
           Split("org.freedesktop.DBus.Properties org.freedesktop.DBus.Introspectable a.b", ' ');
       peer.Call(peer.OneOf(With(paths, {kPath, std::string(kPath) + "/below"})),
                 peer.OneOf(With(interfaces, {kInterface})),
                 peer.OneOf(Split("Deliver Get GetAll Introspect deliver Other", ' ')),
                 peer.OneOf(Split(",s,ss,ssa", ',')), kInterface);
     }},
    {"random bytes", 100, [](HostilePeer& peer) { peer.Deliver(peer.RandomBytes(2000)); }},
    {"damaged bundles", 150,
     [](HostilePeer& peer) {
       const std::string text = Message("ACTION_CUSTOM", peer.RandomBytes(50));
       peer.Deliver(peer.Damaged(text.empty() ? Message("ACTION_PLAY", "1") : text));
     }},
    {"nonsense with a right checksum", 150,
     [](HostilePeer& peer) {
       const auto bodies = Split(
           "s99999999999999999999:a1:b|s18446744073709551615:a18446744073709551615:b|"
           "s2147483648:a1:b|s-1:a1:b|s1:a4294967297:b|s7:command4:PLAY|a1:k99999999:1:a|"
           "b1:k3:0g1|b1:k1:0|s7:command11:ACTION_PLAYs7:command11:ACTION_PLAYs7:strData1:1");
       peer.Deliver(SignedBundle(peer.OneOf(
           With(bodies, {std::string("s7:comm\0nd1:a", 13), Repeated("s0:0:", 1 + peer.Below(2000)),
                         Repeated("a1:k1:", 1 + peer.Below(2000)), peer.RandomBytes(400)}))));
     }},
    {"incomplete messages", 98,
     [](HostilePeer& peer) {
       peer.Deliver(peer.OneOf({EncodeEntries({}), EncodeEntries({{wire::kCommandKey, "ACTION_PLAY"}}),
                                EncodeEntries({{wire::kDataKey, "1"}}),
                                EncodeEntries({{"Command", "ACTION_PLAY"}, {"strdata", "1"}}),
                                SignedBundle("b7:command6:000102a7:strData2:1:a1:b")}));
     }},
    {"unknown actions", 100,
     [](HostilePeer& peer) {
       const auto actions = Split(
           "|action_play|ACTION_PLAY |__proto__|constructor|toString|ACTION_UNKNOWN|"
           "\"},\"listenerId\":\"ACTION_PLAY|\xff\xfe");
       peer.Deliver(Message(peer.OneOf(With(actions, {std::string(20'000, 'A')})), "1"));
     }},
    {"strange data", 196,
     [](HostilePeer& peer) {
       const auto texts = Split(
           "|\xc3\x28 \xf0\x9f\x98 \xed\xa0\x80|1e999999|-99999999999999999999999999999|"
           "\"}]',\\u0000\\ud800 </script>");
       const std::string data = peer.OneOf(With(
           texts, {Repeated("[", 1 + peer.Below(20'000)), Repeated("{\"a\":", 1 + peer.Below(5'000)),
                   EncodeEntries({{"n", "a\",\"n\":\"b"}}),
                   EncodeEntries({{"__proto__", "{}"}, {"constructor", "x"}, {"id", "-1"}}),
                   EncodeEntries({{"id", "1e400"}, {"size", "not a number"}}),
                   EncodeEntries({{"title", "\xff"}, {"raw", "\\"}, {"utterance", std::string(10'000, '"')}}),
                   SignedBundle("s2:id999:0"), SignedBundle(Repeated("s2:id1:0", 1 + peer.Below(1000)))}));
       Entries entries = {{wire::kCommandKey, peer.OneOf(peer.words_)}, {wire::kDataKey, data}};
       if (peer.Below(2) == 0)
         entries.emplace_back(wire::kTotalKey, peer.OneOf(Split("0 -1 10 99999999999999999999 0x10 a", ' ')));
       peer.Deliver(EncodeEntries(entries));
     }},
    {"huge messages", 4,
     [](HostilePeer& peer) {
       const size_t size = std::stoul(peer.OneOf({"65536", "65537", "1048576", "4194304"}));
       peer.Deliver(peer.Below(2) == 0 ? std::string(size, 'x') : SignedBundle(Repeated("s1:", size / 3)));
     }},
    {"events", 2, [](HostilePeer& peer) { peer.PublishStart(); }},
};

HostilePeer::HostilePeer(std::string target, std::vector<std::string> words, unsigned seed)
    : target_(std::move(target)), words_(std::move(words)), random_(seed) {
  sd_bus* bus = nullptr;
  Require(sd_bus_open_user(&bus) >= 0, "The hostile peer can't reach the bus.");
  bus_.reset(bus);
}

void HostilePeer::Send() {
  size_t left = Below(1000);
  const Kind* kind = kKinds;
  while (left >= kind->weight) left -= (kind++)->weight;
  kind->send(*this);
  ++sent_[kind->name];
  while (sd_bus_process(bus_.get(), nullptr) > 0) continue;
}

void HostilePeer::Send(sd_bus_message* message) {
  const nurvo::MessagePtr owner(message);
  Require(sd_bus_send(bus_.get(), message, nullptr) >= 0, "The hostile peer can't send.");
}

void HostilePeer::Flush() {
  sd_bus_flush(bus_.get());
  const char* const daemon = "org.freedesktop.DBus";
  sd_bus_message* answer = nullptr;
  sd_bus_call_method(bus_.get(), daemon, "/org/freedesktop/DBus", daemon, "GetId", nullptr, &answer, "");
  const nurvo::MessagePtr owner(answer);
}

void HostilePeer::Deliver(const std::string& payload) {
  sd_bus_message* made = nullptr;
  sd_bus_message_new_method_call(bus_.get(), &made, target_.c_str(), kPath, kInterface, "Deliver");
  sd_bus_message_set_expect_reply(made, Below(10) == 0 ? 1 : 0);
  const std::string claim = OneOf({wire::kServiceId, "", target_, ":1.1", "a b\nc", "com.example.Other"});
  sd_bus_message_append(made, "ss", claim.c_str(), Below(2) == 0 ? "" : "a port");
  sd_bus_message_append_array(made, 'y', payload.data(), payload.size());
  Send(made);
}

void HostilePeer::Call(const std::string& path, const std::string& interface, const std::string& member,
                       const std::string& signature, const std::string& text) {
  sd_bus_message* made = nullptr;
  sd_bus_message_new_method_call(bus_.get(), &made, target_.c_str(), path.c_str(), interface.c_str(),
                                 member.c_str());
  const uint64_t number = ~uint64_t{0};
  for (const char type : signature) {
    if (type == 's') sd_bus_message_append_basic(made, 's', text.c_str());
    if (type == 't') sd_bus_message_append_basic(made, 't', &number);
    if (type == 'v') sd_bus_message_append(made, "v", "as", 1, text.c_str());
    if (type == 'a') sd_bus_message_append_array(made, 'u', &number, sizeof(number));
  }
  Send(made);
}

// The service's start-up event from somebody else, with whatever in it; the page registers anew for those
// that hold together.
void HostilePeer::PublishStart() {
  if (target_ == wire::kServiceId) return Deliver("");  // its own event is not for it
  sd_bus_message* made = nullptr;
  sd_bus_message_new_signal(bus_.get(), &made, "/nurvo/event", "nurvo.Event", "Published");
  const std::string payload = Below(4) == 0 ? EncodeEntries({}) : RandomBytes(100);
  sd_bus_message_append(made, "s", wire::kInitEvent);
  if (Below(4) > 0) sd_bus_message_append_array(made, 'y', payload.data(), payload.size());
  Send(made);
}

// With another byte, a piece missing or some bytes more.
std::string HostilePeer::Damaged(std::string text) {
  const size_t at = Below(text.size());
  const size_t way = Below(3);
  if (way == 0) text[at] = static_cast<char>(random_());
  if (way == 1) text.resize(at);
  if (way == 2) text.insert(at, RandomBytes(20));
  return text;
}

std::string HostilePeer::RandomBytes(size_t most) {
  std::string bytes(Below(most + 1), '\0');
  for (char& byte : bytes) byte = static_cast<char>(random_());
  return bytes;
}

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
