// Bundle entries to JSON members.
#include "voice-interaction/bundle_json.h"

#include <cstring>
#include <optional>

#include "voice-interaction/module_log.h"
#include "voice-interaction/platform_ptr.h"

namespace extension::voice_interaction {

namespace {

using EntryCallback = void (*)(const char*, int, const bundle_keyval_t*, void*);

// Duplicating the entry lends its value: the platform's accessor takes an entry that it may change.
std::optional<std::string> BasicValue(const bundle_keyval_t* key_value) {
  const KeyvalPtr copy(bundle_keyval_dup(key_value));
  void* value = nullptr;
  size_t size = 0;
  if (!copy || bundle_keyval_get_basic_val(copy.get(), &value, &size) != 0 || value == nullptr) return {};
  return static_cast<const char*>(value);
}

void AppendMember(std::string& json, const std::string& key, const std::string& value) {
  json.append("\"").append(key).append("\":\"").append(value).append("\",");
}

std::string JoinMembers(const char* bundle_text, EntryCallback add_entry) {
  const BundlePtr entries(bundle_decode(reinterpret_cast<const bundle_raw*>(bundle_text),
                                        static_cast<int>(std::strlen(bundle_text))));
  std::string json = "{";
  if (entries) bundle_foreach(entries.get(), add_entry, &json);
  const size_t last_comma = json.rfind(',');
  if (last_comma != std::string::npos) json.resize(last_comma);
  return json + "}";
}

}  // namespace

void AddJsonParamCallback(const char* key, int /*type*/, const bundle_keyval_t* key_value, void* user_data) {
  std::string& json = *static_cast<std::string*>(user_data);
  MODULE_INFO_F("Current Value [%s]", json.c_str());
  const std::optional<std::string> value = BasicValue(key_value);
  if (!value) return;
  MODULE_INFO_F("Bundle Iter Key [%s] Value [%s]", key, value->c_str());
  AppendMember(json, key, *value);
}

void AddSearchJsonParamCallback(const char* key, int /*type*/, const bundle_keyval_t* key_value,
                                void* user_data) {
  std::string& json = *static_cast<std::string*>(user_data);
  MODULE_INFO_F("Current Value [%s]", json.c_str());
  const std::optional<std::string> value = BasicValue(key_value);
  if (!value) return;
  MODULE_INFO_F("Bundle Iter Key [%s] Value [%s]", key, value->c_str());
  if (std::strcmp(key, "raw") == 0) return;
  AppendMember(json, std::strcmp(key, "content_type") == 0 ? "contentType" : key, *value);
}

std::string BuildJsonObjectFromBundle(const char* bundle_text) {
  std::string json = JoinMembers(bundle_text, AddJsonParamCallback);
  MODULE_INFO_F("Finished to build Object from bundle [%s]", json.c_str());
  return json;
}

std::string BuildJsonSearchTermFromBundle(const char* bundle_text) {
  std::string json = JoinMembers(bundle_text, AddSearchJsonParamCallback);
  MODULE_INFO_F("Finished to build Object from bundle [%s]", json.c_str());
  return json;
}

}  // namespace extension::voice_interaction
