// A command of the voice service: an action and its data, before it is put on the wire.
#ifndef CORVIS_VOICE_SERVICE_PHRASES_COMMAND_H_
#define CORVIS_VOICE_SERVICE_PHRASES_COMMAND_H_

#include <string>
#include <vector>

namespace corvis::voice {

struct Field {
  std::string key;
  std::string value;
};
inline bool operator==(const Field& a, const Field& b) {
  return a.key == b.key && a.value == b.value;
}
using Fields = std::vector<Field>;

struct Command {
  std::string action;
  // The data as it is sent, unless there are fields.
  std::string text;
  // Sent as one encoded bundle. Keys are unique and not empty.
  Fields fields;

  // The data as a person reads and writes it: the text, or `key=value key="two words"`.
  std::string ReadableData() const;
  // What the raw form takes: the action and the data.
  std::string ToRaw() const;
};
inline bool operator==(const Command& a, const Command& b) {
  return a.action == b.action && a.text == b.text && a.fields == b.fields;
}

}  // namespace corvis::voice

#endif  // CORVIS_VOICE_SERVICE_PHRASES_COMMAND_H_
