// Implements the platform's C interfaces in memory.
#include "testing/fake/fake_platform.h"

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
struct vestra_configuration {};

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

int Log(int priority, const char* tag, const char* format, va_list arguments) {
  if (Platform::Get().Count("log", false)) return kRefused;
  char* text = nullptr;
  if (vasprintf(&text, format, arguments) < 0) return kRefused;
  Platform::Get().log.push_back({priority, tag, text});
  free(text);
  return 0;
}

char* NewText(const std::string& text) {
  return strdup(text.c_str());
}

template <typename T>
int Make(const char* name, T** made) {
  if (Platform::Get().Count(name)) return kRefused;
  *made = new T;
  return 0;
}

}  // namespace

Platform& Platform::Get() {
  return *Current();
}
void Platform::Reset() {
  Current() = std::make_unique<Platform>();
}

void Platform::Fail(const std::string& name, int nth, bool for_ever) {
  failures_[name] = {counts[name] + nth, for_ever};
}

void Platform::FailCall(int nth, bool for_ever) {
  failure_ = {total_calls + nth, for_ever};
}

void Platform::FailNothing() {
  failures_.clear();
  failure_ = {};
}

bool Platform::IsToFail(const std::string& name) const {
  const auto is_due = [](int count, const std::pair<int, bool>& failure) {
    return count == failure.first || (failure.second && count > failure.first);
  };
  const auto failure = failures_.find(name);
  return is_due(total_calls, failure_) ||
         (failure != failures_.end() && is_due(counts.at(name), failure->second));
}

bool Platform::Count(const std::string& name, bool record) {
  if (record) calls.push_back(name);
  if (record && on_call) on_call();
  ++counts[name];
  ++total_calls;
  const bool fails = IsToFail(name);
  if (fails && first_failed.empty()) first_failed = name;
  return fails;
}

bool Platform::Deliver(const Entries& entries) {
  if (ports.empty()) return false;
  bundle message = BundleOf(entries);
  const auto [id, port] = *ports.begin();
  port.callback(id, "com.kelvaro.tv.vif", port.name.c_str(), true, &message, port.user_data);
  return true;
}

int Platform::PublishStart() const {
  const auto subscribed = events;
  bundle data;
  for (const auto& [handle, target] : subscribed) {
    target.first("event.com.kelvaro.tv.vif.InitEvent", &data, target.second);
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

int app_manager_get_app_id(pid_t /*pid*/, char** app_id) {
  if (Platform::Get().Count(__func__)) return fake::kRefused;
  *app_id = fake::NewText(Platform::Get().app_id);
  return 0;
}

bundle* bundle_create() {
  return Platform::Get().Count(__func__, false) ? nullptr : new bundle;
}

int bundle_add(bundle* b, const char* key, const char* value) {
  if (Platform::Get().Count(__func__, false)) return fake::kRefused;
  b->entries.push_back({key, value, false});
  return 0;
}

int bundle_get_str(bundle* b, const char* key, char** value) {
  if (Platform::Get().Count(__func__, false)) return fake::kRefused;
  for (bundle_keyval_t& entry : b->entries) {
    if (entry.key != key || entry.is_array) continue;
    *value = entry.value.data();
    return 0;
  }
  return fake::kRefused;
}

int bundle_encode(bundle* b, bundle_raw** text, int* length) {
  if (Platform::Get().Count(__func__, false)) return fake::kRefused;
  const std::string encoded = fake::EncodeEntries(*b);
  *text = reinterpret_cast<bundle_raw*>(fake::NewText(encoded));
  *length = static_cast<int>(encoded.size());
  return 0;
}

bundle* bundle_decode(const bundle_raw* text, int length) {
  if (Platform::Get().Count(__func__, false)) return nullptr;
  const std::string encoded(reinterpret_cast<const char*>(text), static_cast<size_t>(length));
  if (encoded.empty() || encoded[0] != 'b') return nullptr;
  auto b = std::make_unique<bundle>();
  for (const std::string& entry : Split(encoded.substr(1), ';')) {
    const size_t equals = entry.find('=');
    if (equals == 0 || equals == std::string::npos) return nullptr;
    b->entries.push_back({entry.substr(1, equals - 1), entry.substr(equals + 1), entry[0] == 'a'});
  }
  return b.release();
}

void bundle_foreach(bundle* b, void (*visit)(const char*, int, const bundle_keyval_t*, void*),
                    void* user_data) {
  if (Platform::Get().Count(__func__, false)) return;
  for (const bundle_keyval_t& entry : b->entries) visit(entry.key.c_str(), 1, &entry, user_data);
}

int bundle_free(bundle* b) {
  const bool fails = Platform::Get().Count(__func__, false);
  delete b;
  return fails ? fake::kRefused : 0;
}

bundle_keyval_t* bundle_keyval_dup(const bundle_keyval_t* keyval) {
  return Platform::Get().Count(__func__, false) ? nullptr : new bundle_keyval_t(*keyval);
}

int bundle_keyval_get_basic_val(bundle_keyval_t* keyval, void** value, size_t* size) {
  if (Platform::Get().Count(__func__, false) || keyval->is_array) return fake::kRefused;
  *value = keyval->value.data();
  *size = keyval->value.size() + 1;
  return 0;
}

void bundle_keyval_free(bundle_keyval_t* keyval) {
  delete keyval;
}

int event_add_event_handler(const char* name, event_cb callback, void* user_data, event_handler_h* handler) {
  if (Platform::Get().Count(std::string(__func__) + " " + name)) return fake::kRefused;
  *handler = new event_handler;
  Platform::Get().events[*handler] = {callback, user_data};
  return 0;
}

int event_remove_event_handler(event_handler_h handler) {
  const bool fails = Platform::Get().Count(__func__);
  if (Platform::Get().events.erase(handler) == 0) return fake::kRefused;
  delete handler;
  return fails ? fake::kRefused : 0;
}

int message_port_register_local_port(const char* name, message_port_message_cb callback, void* user_data) {
  if (Platform::Get().Count(__func__)) return fake::kRefused;
  const int id = Platform::Get().counts[__func__];
  Platform::Get().ports[id] = {name, callback, user_data};
  return id;
}

int message_port_unregister_local_port(int local_port_id) {
  const bool fails = Platform::Get().Count(__func__);
  return Platform::Get().ports.erase(local_port_id) == 0 || fails ? fake::kRefused : 0;
}

int message_port_send_message(const char* remote_app_id, const char* remote_port, bundle* message) {
  Platform& platform = Platform::Get();
  if (platform.Count(std::string(__func__) + " " + remote_app_id + " " + remote_port)) return fake::kRefused;
  if (static_cast<int>(fake::EncodeEntries(*message).size()) > platform.port_limit) {
    return MESSAGE_PORT_ERROR_MAX_EXCEEDED;
  }
  fake::Entries entries;
  for (const bundle_keyval_t& entry : message->entries) entries.emplace_back(entry.key, entry.value);
  platform.sent.push_back(entries);
  return 0;
}

int vestra_configuration_create(vestra_configuration** configuration) {
  return fake::Make(__func__, configuration);
}

int vestra_configuration_set_cache_size(vestra_configuration* configuration, size_t size) {
  if (Platform::Get().Count(__func__ + (" " + std::to_string(size)))) return fake::kRefused;
  return configuration == nullptr ? fake::kRefused : 0;
}

int vestra_initialize(vestra** client, const vestra_configuration* /*configuration*/) {
  return fake::Make(__func__, client);
}

void vestra_configuration_destroy(vestra_configuration* configuration) {
  Platform::Get().Count(__func__);
  delete configuration;
}

void vestra_finish(vestra* client) {
  Platform::Get().Count(__func__);
  delete client;
}

char* vestra_session_from_pid(pid_t /*pid*/) {
  return Platform::Get().Count(__func__) ? nullptr : fake::NewText("session-1");
}

int vestra_check(vestra* /*v*/, const char* client, const char* client_session, const char* user,
                 const char* privilege) {
  if (Platform::Get().Count(std::string(__func__) + " " + client + " " + client_session + " " + user))
    return -7;
  const std::string uri = privilege;
  const auto& granted = Platform::Get().granted_paths;
  return granted.count(uri.substr(uri.find("/privilege/"))) > 0 ? VESTRA_API_ACCESS_ALLOWED : 1;
}

ssize_t smack_new_label_from_self(char** label) {
  if (Platform::Get().Count(__func__)) return fake::kRefused;
  *label = fake::NewText(Platform::Get().label);
  return static_cast<ssize_t>(Platform::Get().label.size());
}

}  // extern "C"
