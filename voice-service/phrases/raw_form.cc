// Reading and writing the raw form of a command.
#include "phrases/raw_form.h"

#include <algorithm>
#include <optional>

#include "phrases/actions.h"
#include "support/suggestion.h"
#include "support/text.h"

namespace corvis::voice {

namespace {

constexpr std::string_view kBlanks = " \t";

size_t EndOfBlanks(std::string_view line, size_t position) {
  return std::min(line.find_first_not_of(kBlanks, position), line.size());
}

bool isKeyByte(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' || c == '.' ||
         c == '-';
}

// The end of the key at `position`, which an "=" follows; nothing when there is none.
std::optional<size_t> EndOfKey(std::string_view line, size_t position) {
  size_t end = position;
  while (end < line.size() && isKeyByte(line[end])) ++end;
  if (end == position || end == line.size() || line[end] != '=') return std::nullopt;
  return end;
}

// Reads one key=value word; `position` ends behind it. False, with or without an error, when it has another
// form.
bool ReadField(std::string_view line, size_t& position, Field& field, std::optional<TextError>& error) {
  const std::optional<size_t> equals = EndOfKey(line, position);
  if (!equals) return false;
  field.key = line.substr(position, *equals - position);
  position = *equals + 1;
  if (position < line.size() && line[position] == '"') {
    TextError fault;
    if (!ReadQuoted(line, position, field.value, fault)) {
      error = fault;
      return false;
    }
    return position == line.size() || kBlanks.find(line[position]) != std::string_view::npos;
  }
  const size_t end = std::min(line.find_first_of(kBlanks, position), line.size());
  field.value = line.substr(position, end - position);
  position = end;
  return true;
}

// The entries of a bundle, when all words are such.
bool ReadFields(std::string_view line, size_t position, Fields& fields, std::optional<TextError>& error) {
  while (position < line.size()) {
    const size_t begin = position;
    Field field;
    if (!ReadField(line, position, field, error)) return false;
    const bool is_twice =
        std::any_of(fields.begin(), fields.end(), [&](const Field& f) { return f.key == field.key; });
    if (is_twice) {
      error = TextError{begin, "the key \"" + field.key + "\" is there twice; a bundle holds each key once"};
      return false;
    }
    fields.push_back(std::move(field));
    position = EndOfBlanks(line, position);
  }
  return !fields.empty();
}

// The data as one text: what stands between the quotes when all of it is one quoted text.
std::variant<std::string, TextError> ReadText(std::string_view line, size_t position) {
  const std::string rest(Trim(line.substr(position)));
  if (rest.empty() || rest.front() != '"') return rest;
  TextError error;
  std::string value;
  size_t end = position;
  if (!ReadQuoted(line, end, value, error)) return error;
  return Trim(line.substr(end)).empty() ? value : rest;
}

TextError UnknownAction(const std::string& name, size_t offset) {
  return {offset, "there is no action " + name + "." + DidYouMean(name, ActionNames())};
}

}  // namespace

bool isRawForm(std::string_view line) {
  return StartsWith(Trim(line), kActionPrefix);
}

std::variant<Command, TextError> ParseRawForm(std::string_view line) {
  const size_t begin = EndOfBlanks(line, 0);
  const size_t end = std::min(line.find_first_of(kBlanks, begin), line.size());
  Command command;
  command.action = line.substr(begin, end - begin);
  const Action* const action = FindAction(command.action);
  if (action == nullptr) return UnknownAction(command.action, begin);

  const size_t data = EndOfBlanks(line, end);
  std::optional<TextError> error;
  if (action->takes_bundle && ReadFields(line, data, command.fields, error)) return command;
  if (error) return *error;
  command.fields.clear();
  auto text = ReadText(line, data);
  if (const auto* fault = std::get_if<TextError>(&text)) return *fault;
  command.text = std::get<std::string>(text);
  return command;
}

namespace {

// A value that reads back as it is without quotes.
bool isPlainValue(const std::string& value) {
  return value.find_first_of(" \t\n\r\"\\") == std::string::npos && !value.empty();
}

bool readsBackAs(const std::string& raw, const Command& command) {
  const auto read = ParseRawForm(raw);
  const auto* const same = std::get_if<Command>(&read);
  return same != nullptr && *same == command;
}

}  // namespace

std::string Command::ReadableData() const {
  if (fields.empty()) return text;
  std::string readable;
  for (const Field& field : fields) {
    if (!readable.empty()) readable += ' ';
    readable += field.key + "=" + (isPlainValue(field.value) ? field.value : Quoted(field.value));
  }
  return readable;
}

std::string Command::ToRaw() const {
  const std::string data = ReadableData();
  if (data.empty()) return action;
  const std::string plain = action + " " + data;
  const bool is_one_line = data.find('\n') == std::string::npos;
  if (is_one_line && readsBackAs(plain, *this)) return plain;
  return action + " " + Quoted(data);
}

}  // namespace corvis::voice
