// Builds and serializes the posted message.
#include "common/picojson.h"

#include "voice-interaction/posted_message.h"

#include <utility>

namespace extension::voice_interaction {

namespace {

// picojson writes every "/" as "\/". Both mean the same to a JSON parser; the message keeps the plain one.
std::string WithPlainSlashes(const std::string& json) {
  std::string plain;
  plain.reserve(json.size());
  size_t taken = 0;
  // An escape is two characters, so the second of "\\" does not start one of its own.
  for (size_t at = json.find('\\'); at != std::string::npos; at = json.find('\\', at + 2)) {
    if (json[at + 1] != '/') continue;
    plain.append(json, taken, at - taken);
    taken = at + 1;
  }
  return plain.append(json, taken);
}

}  // namespace

std::string BuildPostedMessage(const char* action, const char* param) {
  picojson::object message;
  message["listenerId"] = picojson::value(action);
  message["action"] = picojson::value(action);
  if (param != nullptr) message["param"] = picojson::value(param);
  return WithPlainSlashes(picojson::value(std::move(message)).serialize());
}

}  // namespace extension::voice_interaction
