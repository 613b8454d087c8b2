// Converts bundle entries to JSON members.
#include "voice-interaction/bundle_json.h"

#include <cstring>
#include <new>
#include <optional>

#include "voice-interaction/module_log.h"
#include "voice-interaction/platform_ptr.h"

namespace extension::voice_interaction {

namespace {

using EntryCallback = void (*)(const char*, int, const bundle_keyval_t*, void*);

// The text after a member's value.
constexpr const char* kMemberEnd = "\",";

// Appends `"name":"value` with the value of `entry` and returns the position of the value in `json`. For an
// entry without a basic value returns nothing and leaves `json` unchanged. The entry is duplicated because
// the platform's accessor requires one that it may modify.
std::optional<size_t> AppendNameAndValue(std::string& json, const char* name, const bundle_keyval_t* entry) {
  const KeyvalPtr copy(bundle_keyval_dup(entry));
  void* value = nullptr;
  size_t size = 0;
  if (!copy || bundle_keyval_get_basic_val(copy.get(), &value, &size) != 0 || value == nullptr) return {};
  json.append("\"").append(name).append("\":\"");
  const size_t place = json.size();
  json.append(static_cast<const char*>(value));
  return place;
}

std::string JoinMembers(const char* bundle_text, EntryCallback add_entry) {
  const size_t length = std::strlen(bundle_text);
  const BundlePtr entries(
      bundle_decode(reinterpret_cast<const bundle_raw*>(bundle_text), static_cast<int>(length)));
  std::string json = "{";
  if (entries) {
    json.reserve(length);  // both texts have about the same length
    bundle_foreach(entries.get(), add_entry, &json);
    // A callback has run out of memory and emptied the text; later ones may have appended their members.
    if (json[0] != '{') throw std::bad_alloc();
  }
  const size_t last_comma = json.rfind(',');
  if (last_comma != std::string::npos) json.resize(last_comma);
  json += '}';
  return json;
}

// Marks the text as incomplete: a complete one starts with a brace.
void DropText(void* user_data) noexcept {
  static_cast<std::string*>(user_data)->clear();
}

}  // namespace

void AddJsonParamCallback(const char* key, int /*type*/, const bundle_keyval_t* key_value,
                          void* user_data) try {
  std::string& json = *static_cast<std::string*>(user_data);
  MODULE_INFO_F("Current Value [%s]", json.c_str());
  const auto value = AppendNameAndValue(json, key, key_value);
  if (!value) return;
  MODULE_INFO_F("Bundle Iter Key [%s] Value [%s]", key, json.c_str() + *value);
  json += kMemberEnd;
} catch (...) {
  DropText(user_data);
}

void AddSearchJsonParamCallback(const char* key, int /*type*/, const bundle_keyval_t* key_value,
                                void* user_data) try {
  std::string& json = *static_cast<std::string*>(user_data);
  MODULE_INFO_F("Current Value [%s]", json.c_str());
  const size_t begin = json.size();
  const char* const name = std::strcmp(key, "content_type") == 0 ? "contentType" : key;
  const auto value = AppendNameAndValue(json, name, key_value);
  if (!value) return;
  MODULE_INFO_F("Bundle Iter Key [%s] Value [%s]", key, json.c_str() + *value);
  if (std::strcmp(key, "raw") == 0) {
    json.resize(begin);
  } else {
    json += kMemberEnd;
  }
} catch (...) {
  DropText(user_data);
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
