// Implements the platform's C interfaces in memory.
#include "testing/fake/fake_platform.h"

#include <algorithm>
#include <climits>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "nurvo/app_manager.h"
#include "nurvo/log.h"
#include "nurvo/smack.h"
#include "nurvo/vestra.h"
#include "testing/split.h"

struct bundle_keyval_t {
  std::string key;
  std::string value;  // empty for an array
  bool is_array;
};
struct bundle {
  std::vector<bundle_keyval_t> entries;
};
struct event_handler {};
struct vestra {};
struct vestra_configuration {
  size_t cache_size = 0;
};

namespace fake {

namespace {

std::unique_ptr<Platform>& Current() {
  static auto platform = std::make_unique<Platform>();
  return platform;
}

constexpr int kRefused = -1;

// An entry is "s" or "a" (an array), its key and value, and a semicolon.
std::string EncodeEntries(const bundle& b) {
  std::string text = "b";
  for (const bundle_keyval_t& entry : b.entries)
    text += (entry.is_array ? "a" : "s") + entry.key + "=" + entry.value + ";";
  return text;
}

bundle BundleOf(const Entries& entries) {
  bundle b;
  for (const auto& [key, value] : entries) b.entries.push_back({key, value, false});
  return b;
}

template <typename T>
T* Leftover() {
  return reinterpret_cast<T*>(const_cast<char*>(kLeftover));
}

// A call of the library, from its begin to its end.
class Call {
 public:
  // The words of its name: the function, and what it is called with.
  explicit Call(std::initializer_list<std::string_view> words, bool record = true)
      : outcome_(Platform::Get().Count(Join(words), record)) {}

  bool fails() const { return outcome_ == Outcome::kFailed; }
  bool isDone() const { return outcome_ == Outcome::kDone; }
  int result() const { return fails() ? kRefused : 0; }
  // The leftover, null or `value`.
  template <typename T, typename Value>
  int Give(T** output, const Value& value) const {
    *output = isDone() ? value() : fails() ? Leftover<T>() : nullptr;
    return result();
  }

 private:
  static std::string Join(std::initializer_list<std::string_view> words) {
    std::string name;
    for (const std::string_view word : words) name.append(name.empty() ? "" : " ").append(word);
    return name;
  }

  const FakeCode scope_;
  const Outcome outcome_;
};

// A call that is counted only.
class FrequentCall : public Call {
 public:
  explicit FrequentCall(const char* name) : Call({name}, false) {}
};

int Log(int priority, const char* tag, const char* format, va_list arguments) {
  if (FrequentCall("log").fails()) return kRefused;
  const FakeCode scope;
  char* text = nullptr;
  if (vasprintf(&text, format, arguments) < 0) return kRefused;
  Platform::Get().log.push_back({priority, tag, text});
  free(text);
  return 0;
}

char* NewText(const std::string& text) {
  return strdup(text.c_str());
}

void Expect(bool holds, const char* misuse) {
  if (!holds) Platform::Get().misuses.emplace_back(misuse);
}

template <typename T>
T* New(const char* kind, T object = {}) {
  auto* const made = new T(std::move(object));
  Platform::Get().objects[made] = kind;
  return made;
}

bool IsA(const char* kind, const void* object) {
  const auto found = Platform::Get().objects.find(object);
  return found != Platform::Get().objects.end() && found->second == kind;
}

// Whether it is the configuration that exists; null if there is none.
bool IsTheConfiguration(const vestra_configuration* configuration) {
  const auto& objects = Platform::Get().objects;
  const bool exists = std::any_of(objects.begin(), objects.end(),
                                  [](const auto& object) { return object.second == "configuration"; });
  return exists ? IsA("configuration", configuration) : configuration == nullptr;
}

template <typename T>
void Delete(const char* kind, T* object) {
  Expect(IsA(kind, object), kind);
  if (Platform::Get().objects.erase(object) == 1) delete object;
}

}  // namespace

Platform& Platform::Get() {
  return *Current();
}
void Platform::Reset() {
  Current() = std::make_unique<Platform>();
}

void Platform::Fail(const std::string& name, int nth, bool for_ever) {
  const int first = counts[name] + nth;
  plans_[name] = {first, for_ever ? INT_MAX : first, Outcome::kFailed};
}

void Platform::AnswerNull(const std::string& name, int nth) {
  const int first = counts[name] + nth;
  plans_[name] = {first, first, Outcome::kNull};
}

void Platform::EndCall(int nth, Outcome outcome, bool for_ever) {
  const int first = total_calls + nth;
  plan_ = {first, for_ever ? INT_MAX : first, outcome};
}

void Platform::FailNothing() {
  plans_.clear();
  plan_ = {};
}

Outcome Platform::OutcomeOf(const std::string& name) const {
  const Outcome any = plan_.Of(total_calls);
  const auto plan = plans_.find(name);
  return any != Outcome::kDone || plan == plans_.end() ? any : plan->second.Of(counts.at(name));
}

Outcome Platform::Count(const std::string& name, bool record) {
  if (record) calls.push_back(name);
  if (record && on_call) on_call();
  ++counts[name];
  ++total_calls;
  const Outcome outcome = OutcomeOf(name);
  if (outcome != Outcome::kDone && first_failed.empty()) first_failed = name;
  return outcome;
}

bool Platform::Deliver(const Entries& entries) {
  if (ports.empty()) return false;
  bundle message = BundleOf(entries);
  const auto [id, port] = *ports.begin();
  CallBack([&, id = id, port = port] {
    port.callback(id, "com.kelvaro.tv.vif", port.name.c_str(), true, &message, port.user_data);
  });
  return true;
}

int Platform::PublishStart() {
  const auto subscribed = events;
  bundle data;
  for (const auto& [handle, target] : subscribed) {
    CallBack(
        [&, target = target] { target.first("event.com.kelvaro.tv.vif.InitEvent", &data, target.second); });
  }
  return static_cast<int>(subscribed.size());
}

std::vector<std::string> Platform::TakeSent() {
  std::vector<std::string> texts;
  for (const Entries& message : sent) {
    std::string text = message.at(0).second + "|" + message.at(1).second;
    if (message.at(2).first == "totalDataLength") text += "|" + message.at(2).second;
    texts.push_back(text);
  }
  sent.clear();
  return texts;
}

std::vector<std::string> Platform::LogWith(const std::string& part) const {
  std::vector<std::string> texts;
  for (const LogLine& line : log) {
    if (line.text.find(part) != std::string::npos) texts.push_back(line.text);
  }
  return texts;
}

std::string Encode(const Entries& entries) {
  return EncodeEntries(BundleOf(entries));
}

std::string EncodeWithArray(const Entries& entries, const std::string& array_key) {
  return Encode(entries) + "a" + array_key + "=;";
}

}  // namespace fake

using fake::Call;
using fake::Expect;
using fake::FakeCode;
using fake::FrequentCall;
using fake::Platform;

extern "C" {

int log_print(int priority, const char* tag, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const int result = fake::Log(priority, tag, format, arguments);
  va_end(arguments);
  return result;
}

int log_print_to(int buffer_id, int priority, const char* tag, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  // Only the main log is expected; a line for another buffer appears under a tag that no test expects.
  const int result = fake::Log(priority, buffer_id == 0 ? tag : "another buffer", format, arguments);
  va_end(arguments);
  return result;
}

// In place of the system's: the id of the user who runs the tests would prove little if it is 0.
uid_t getuid() noexcept {
  return Platform::Get().uid;
}

// A failure that has an id all the same: the caller releases it.
int app_manager_get_app_id(pid_t pid, char** app_id) {
  const Call call({__func__});
  Expect(pid == getpid(), "the application id of another process");
  *app_id = call.isDone() || call.fails() ? fake::NewText(Platform::Get().app_id) : nullptr;
  return call.result();
}

bundle* bundle_create(void) {
  const FrequentCall call(__func__);
  return call.isDone() ? fake::New<bundle>("bundle") : nullptr;
}

int bundle_add(bundle* b, const char* key, const char* value) {
  const FrequentCall call(__func__);
  if (!call.fails()) b->entries.push_back({key, value, false});
  return call.result();
}

int bundle_get_str(bundle* b, const char* key, char** value) {
  const FrequentCall call(__func__);
  for (bundle_keyval_t& entry : b->entries) {
    if (entry.key == key && !entry.is_array) return call.Give(value, [&] { return entry.value.data(); });
  }
  *value = fake::Leftover<char>();
  return fake::kRefused;
}

int bundle_encode(bundle* b, bundle_raw** text, int* length) {
  const FrequentCall call(__func__);
  const std::string encoded = fake::EncodeEntries(*b);
  *length = call.fails() ? INT_MAX : static_cast<int>(encoded.size());
  return call.Give(text, [&] { return reinterpret_cast<bundle_raw*>(fake::NewText(encoded)); });
}

bundle* bundle_decode(const bundle_raw* text, int length) {
  const FrequentCall call(__func__);
  if (!call.isDone()) return nullptr;
  const std::string encoded(reinterpret_cast<const char*>(text), static_cast<size_t>(length));
  if (encoded.empty() || encoded[0] != 'b') return nullptr;
  bundle b;
  for (const std::string& entry : Split(encoded.substr(1), ';')) {
    const size_t equals = entry.find('=');
    if (equals == 0 || equals == std::string::npos) return nullptr;
    b.entries.push_back({entry.substr(1, equals - 1), entry.substr(equals + 1), entry[0] == 'a'});
  }
  return fake::New("bundle", b);
}

void bundle_foreach(bundle* b, void (*visit)(const char*, int, const bundle_keyval_t*, void*),
                    void* user_data) {
  const FrequentCall call(__func__);
  if (!call.isDone()) return;
  for (const bundle_keyval_t& entry : b->entries) {
    Platform::Get().CallBack([&] { visit(entry.key.c_str(), 1, &entry, user_data); });
  }
}

int bundle_free(bundle* b) {
  const FrequentCall call(__func__);
  fake::Delete("bundle", b);
  return call.result();
}

bundle_keyval_t* bundle_keyval_dup(const bundle_keyval_t* keyval) {
  const FrequentCall call(__func__);
  return call.isDone() ? fake::New("entry", *keyval) : nullptr;
}

int bundle_keyval_get_basic_val(bundle_keyval_t* keyval, void** value, size_t* size) {
  const FrequentCall call(__func__);
  *size = keyval->value.size() + 1;
  *value = fake::Leftover<char>();
  return keyval->is_array ? fake::kRefused : call.Give(value, [&] { return keyval->value.data(); });
}

void bundle_keyval_free(bundle_keyval_t* keyval) {
  const FakeCode scope;
  fake::Delete("entry", keyval);
}

int event_add_event_handler(const char* name, event_cb callback, void* user_data, event_handler_h* handler) {
  const Call call({__func__, name});
  const auto subscribe = [&] {
    auto* const made = fake::New<event_handler>("subscription");
    Platform::Get().events[made] = {callback, user_data};
    return made;
  };
  return call.Give(handler, subscribe);
}

int event_remove_event_handler(event_handler_h handler) {
  const Call call({__func__});
  Platform::Get().events.erase(handler);
  if (handler != nullptr) fake::Delete("subscription", handler);
  return call.result();
}

int message_port_register_local_port(const char* name, message_port_message_cb callback, void* user_data) {
  const FakeCode scope;
  Platform& platform = Platform::Get();
  const int id = platform.counts[__func__] + 1;
  platform.ports[id] = {name, callback, user_data};
  if (!Call({__func__}).fails()) return id;
  platform.ports.erase(id);
  return fake::kRefused;
}

int message_port_unregister_local_port(int local_port_id) {
  const Call call({__func__});
  return Platform::Get().ports.erase(local_port_id) == 0 ? fake::kRefused : call.result();
}

int message_port_send_message(const char* remote_app_id, const char* remote_port, bundle* message) {
  const Call call({__func__, remote_app_id, remote_port});
  if (call.fails()) return fake::kRefused;
  Platform& platform = Platform::Get();
  if (static_cast<int>(fake::EncodeEntries(*message).size()) > platform.port_limit) {
    return MESSAGE_PORT_ERROR_MAX_EXCEEDED;
  }
  fake::Entries entries;
  for (const bundle_keyval_t& entry : message->entries) entries.emplace_back(entry.key, entry.value);
  platform.sent.push_back(entries);
  return 0;
}

int vestra_configuration_create(vestra_configuration** configuration) {
  const Call call({__func__});
  *configuration = call.isDone() ? fake::New<vestra_configuration>("configuration") : nullptr;
  return call.result();
}

int vestra_configuration_set_cache_size(vestra_configuration* configuration, size_t size) {
  const Call call({__func__, std::to_string(size)});
  Expect(fake::IsTheConfiguration(configuration), "the size of no configuration");
  if (configuration == nullptr || call.fails()) return fake::kRefused;
  configuration->cache_size = size;
  return 0;
}

int vestra_initialize(vestra** client, const vestra_configuration* configuration) {
  const Call call({__func__});
  Expect(fake::IsTheConfiguration(configuration), "a client of no configuration");
  return call.Give(client, [] { return fake::New<vestra>("client"); });
}

void vestra_configuration_destroy(vestra_configuration* configuration) {
  const Call call({__func__});
  if (configuration != nullptr) fake::Delete("configuration", configuration);
}

void vestra_finish(vestra* client) {
  const Call call({__func__});
  fake::Delete("client", client);
}

char* vestra_session_from_pid(pid_t pid) {
  const Call call({__func__});
  Expect(pid == getpid(), "the session of another process");
  return call.isDone() ? fake::NewText("session-1") : nullptr;
}

int vestra_check(vestra* v, const char* client, const char* client_session, const char* user,
                 const char* privilege) {
  const Call call({__func__, client, client_session, user});
  Expect(fake::IsA("client", v), "a question of no client");
  if (call.fails()) return -7;
  return Platform::Get().granted.count(privilege) > 0 ? VESTRA_API_ACCESS_ALLOWED : Platform::Get().refusal;
}

ssize_t smack_new_label_from_self(char** label) {
  const Call call({__func__});
  call.Give(label, [] { return fake::NewText(Platform::Get().label); });
  return call.fails() ? fake::kRefused : static_cast<ssize_t>(Platform::Get().label.size());
}

}  // extern "C"
