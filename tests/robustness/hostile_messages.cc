// The kinds of hostile messages, by a table.
#include "robustness/hostile_messages.h"

#include <algorithm>
#include <utility>

#include "nurvo_desktop/bundle_extras.h"
#include "robustness/stage.h"
#include "service/bundles.h"
#include "service/wire.h"
#include "testing/signed_bundle.h"

namespace robustness {

using namespace corvis::kit;

namespace {

constexpr const char* kPath = "/nurvo/port/com_2eport_2evif_2evoiceinteraction";
constexpr const char* kInterface = "nurvo.MessagePort";

std::string Repeated(const char* text, size_t times) {
  std::string repeated;
  while (times-- > 0) repeated += text;
  return repeated;
}

std::string EncodedBytes() {
  const BundlePtr made(bundle_create());
  const char* const texts[] = {"a", "b"};
  bundle_add_byte(made.get(), wire::kCommandKey, "\0\1\2", 3);
  bundle_add_str_array(made.get(), wire::kDataKey, texts, 2);
  bundle_raw* text = nullptr;
  int length = 0;
  if (bundle_encode(made.get(), &text, &length) != 0) return "";
  const nurvo::MallocPtr<bundle_raw> owner(text);
  return {reinterpret_cast<const char*>(text), static_cast<size_t>(length)};
}

}  // namespace

struct HostilePeer::Kind {
  const char* name;
  void (HostilePeer::*send)();
  // How often it is among 1,000 messages.
  int weight;
};

const HostilePeer::Kind HostilePeer::kKinds[] = {
    {"strange signatures", &HostilePeer::SendStrangeSignature, 100},
    {"strange calls", &HostilePeer::SendStrangeCall, 100},
    {"random bytes", &HostilePeer::SendRandomBytes, 100},
    {"damaged bundles", &HostilePeer::SendDamagedBundle, 150},
    {"nonsense with a right checksum", &HostilePeer::SendSignedNonsense, 150},
    {"incomplete messages", &HostilePeer::SendIncomplete, 98},
    {"unknown actions", &HostilePeer::SendUnknownAction, 100},
    {"strange data", &HostilePeer::SendStrangeData, 196},
    {"huge messages", &HostilePeer::SendHugeMessage, 4},
    {"events", &HostilePeer::SendEvent, 2},
};

HostilePeer::HostilePeer(std::string target, std::vector<std::string> words, unsigned seed)
    : target_(std::move(target)), words_(std::move(words)), random_(seed) {
  sd_bus* bus = nullptr;
  Require(sd_bus_open_user(&bus) >= 0, "The hostile peer can't reach the bus.");
  bus_.reset(bus);
}

void HostilePeer::Send() {
  auto left = static_cast<int>(Below(1000));
  const Kind* kind = kKinds;
  while (left >= kind->weight) left -= (kind++)->weight;
  (this->*kind->send)();
  ++sent_[kind->name];
  while (sd_bus_process(bus_.get(), nullptr) > 0) continue;
}

void HostilePeer::Flush() {
  sd_bus_flush(bus_.get());
  const char* const daemon = "org.freedesktop.DBus";
  sd_bus_message* answer = nullptr;
  sd_bus_call_method(bus_.get(), daemon, "/org/freedesktop/DBus", daemon, "GetId", nullptr, &answer, "");
  const nurvo::MessagePtr owner(answer);
}

void HostilePeer::Deliver(const std::string& payload) {
  const char* const kClaims[] = {wire::kServiceId, "",       target_.c_str(),
                                 ":1.1",           "a b\nc", "com.example.Other"};
  sd_bus_message* made = nullptr;
  sd_bus_message_new_method_call(bus_.get(), &made, target_.c_str(), kPath, kInterface, "Deliver");
  const nurvo::MessagePtr message(made);
  sd_bus_message_set_expect_reply(made, Below(10) == 0 ? 1 : 0);
  sd_bus_message_append(made, "ss", OneOf(kClaims), Below(2) == 0 ? "" : "a port");
  sd_bus_message_append_array(made, 'y', payload.data(), payload.size());
  Require(sd_bus_send(bus_.get(), made, nullptr) >= 0, "The hostile peer can't send.");
}

// A call without a payload: each type of the signature gets `text`, or a number.
void HostilePeer::Call(const char* path, const char* interface, const char* member, const char* signature,
                       const std::string& text) {
  sd_bus_message* made = nullptr;
  sd_bus_message_new_method_call(bus_.get(), &made, target_.c_str(), path, interface, member);
  const nurvo::MessagePtr message(made);
  const uint64_t number = ~uint64_t{0};
  for (const char* type = signature; *type != '\0'; ++type) {
    if (*type == 's') sd_bus_message_append_basic(made, 's', text.c_str());
    if (*type == 't') sd_bus_message_append_basic(made, 't', &number);
    if (*type == 'v') sd_bus_message_append(made, "v", "as", 1, text.c_str());
    if (*type == 'a') sd_bus_message_append_array(made, 'u', &number, sizeof(number));
  }
  Require(sd_bus_send(bus_.get(), made, nullptr) >= 0, "The hostile peer can't send.");
}

std::string HostilePeer::RandomBytes(size_t most) {
  std::string bytes(Below(most + 1), '\0');
  for (char& byte : bytes) byte = static_cast<char>(random_());
  return bytes;
}

void HostilePeer::SendStrangeSignature() {
  const char* const kSignatures[] = {"",    "s",   "ss", "sss", "ssv",  "sst",
                                     "tss", "ssa", "a",  "v",   "ssat", "vvvv"};
  Call(kPath, kInterface, "Deliver", OneOf(kSignatures), std::string(Below(300), 'x'));
}

void HostilePeer::SendStrangeCall() {
  const char* const kPaths[] = {"/",
                                "/nurvo",
                                "/nurvo/port",
                                "/nurvo/port/_",
                                "/nurvo/port/other",
                                kPath,
                                "/nurvo/port/com_2eport_2evif_2evoiceinteraction/below"};
  const char* const kInterfaces[] = {kInterface, "org.freedesktop.DBus.Properties",
                                     "org.freedesktop.DBus.Introspectable", "a.b"};
  const char* const kMembers[] = {"Deliver", "Get", "GetAll", "Introspect", "deliver", "Other"};
  const char* const kSignatures[] = {"", "s", "ss", "ssa"};
  Call(OneOf(kPaths), OneOf(kInterfaces), OneOf(kMembers), OneOf(kSignatures), kInterface);
}

void HostilePeer::SendRandomBytes() {
  Deliver(RandomBytes(2000));
}

void HostilePeer::SendDamagedBundle() {
  std::string text = EncodeEntries({{wire::kCommandKey, "ACTION_CUSTOM"}, {wire::kDataKey, RandomBytes(50)}});
  if (text.empty()) text = EncodeEntries({{wire::kCommandKey, "ACTION_PLAY"}, {wire::kDataKey, "1"}});
  switch (Below(3)) {
    case 0:
      text[Below(text.size())] = static_cast<char>(random_());
      break;
    case 1:
      text.resize(Below(text.size()));
      break;
    default:
      text.insert(Below(text.size()), RandomBytes(20));
  }
  Deliver(text);
}

void HostilePeer::SendSignedNonsense() {
  const std::string kBodies[] = {
      "s99999999999999999999:a1:b",
      "s18446744073709551615:a18446744073709551615:b",
      "s2147483648:a1:b",
      "s-1:a1:b",
      "s1:a4294967297:b",
      "s7:command4:PLAY",
      std::string("s7:comm\0nd1:a", 13),
      "a1:k99999999:1:a",
      "b1:k3:0g1",
      "b1:k1:0",
      Repeated("s0:0:", 1 + Below(2000)),
      Repeated("a1:k1:", 1 + Below(2000)),
      "s7:command11:ACTION_PLAYs7:command11:ACTION_PLAYs7:strData1:1",
      RandomBytes(400),
  };
  Deliver(SignedBundle(OneOf(kBodies)));
}

void HostilePeer::SendIncomplete() {
  const std::string kMessages[] = {
      EncodeEntries({}),
      EncodeEntries({{wire::kCommandKey, "ACTION_PLAY"}}),
      EncodeEntries({{wire::kDataKey, "1"}}),
      EncodeEntries({{"Command", "ACTION_PLAY"}, {"strdata", "1"}}),
      EncodedBytes(),
  };
  Deliver(OneOf(kMessages));
}

void HostilePeer::SendUnknownAction() {
  const std::string kActions[] = {"",
                                  "action_play",
                                  "ACTION_PLAY ",
                                  "__proto__",
                                  "constructor",
                                  "toString",
                                  "\"},\"listenerId\":\"ACTION_PLAY",
                                  "ACTION_UNKNOWN",
                                  "\xff\xfe",
                                  std::string(20'000, 'A')};
  Deliver(EncodeEntries({{wire::kCommandKey, OneOf(kActions)}, {wire::kDataKey, "1"}}));
}

void HostilePeer::SendStrangeData() {
  const std::string kTexts[] = {
      "",
      "\xc3\x28 \xf0\x9f\x98 \xed\xa0\x80",
      Repeated("[", 1 + Below(20'000)),
      Repeated("{\"a\":", 1 + Below(5'000)),
      "1e999999",
      "-99999999999999999999999999999",
      "\"}]',\\u0000\\ud800 </script>",
      EncodeEntries({{"n", "a\",\"n\":\"b"}}),
      EncodeEntries({{"__proto__", "{}"}, {"constructor", "x"}, {"id", "-1"}}),
      EncodeEntries({{"id", "1e400"}, {"size", "not a number"}}),
      EncodeEntries({{"title", "\xff"}, {"raw", "\\"}, {"utterance", std::string(10'000, '"')}}),
      SignedBundle("s2:id999:0"),
      SignedBundle(Repeated("s2:id1:0", 1 + Below(1000))),
  };
  const std::string kTotals[] = {"0", "-1", "10", "99999999999999999999", "0x10", "a"};
  Entries entries = {{wire::kCommandKey, words_[Below(words_.size())]}, {wire::kDataKey, OneOf(kTexts)}};
  if (Below(2) == 0) entries.emplace_back(wire::kTotalKey, OneOf(kTotals));
  Deliver(EncodeEntries(entries));
}

void HostilePeer::SendHugeMessage() {
  const size_t kSizes[] = {65'536, 65'537, 1 << 20, 4 << 20};
  const size_t size = OneOf(kSizes);
  Deliver(Below(2) == 0 ? std::string(size, 'x') : SignedBundle(Repeated("s1:", size / 3)));
}

// The service's start-up event from somebody else, with whatever in it; the page registers anew for those
// that hold together.
void HostilePeer::SendEvent() {
  if (target_ == wire::kServiceId) return Deliver("");  // its own event is not for it
  sd_bus_message* made = nullptr;
  sd_bus_message_new_signal(bus_.get(), &made, "/nurvo/event", "nurvo.Event", "Published");
  const nurvo::MessagePtr message(made);
  const std::string payload = Below(4) == 0 ? EncodeEntries({}) : RandomBytes(100);
  sd_bus_message_append(made, "s", wire::kInitEvent);
  if (Below(4) > 0) sd_bus_message_append_array(made, 'y', payload.data(), payload.size());
  Require(sd_bus_send(bus_.get(), made, nullptr) >= 0, "The hostile peer can't send.");
}

}  // namespace robustness
