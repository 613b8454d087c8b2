// Reading raw commands.
#include "core/raw_command.h"

#include <algorithm>

#include "core/did_you_mean.h"

namespace corvis::voice {

namespace {

constexpr std::string_view kActionPrefix = "ACTION_";

// Takes a quoted value from behind its first quotation mark. False when it does not end.
bool TakeQuoted(std::string_view& rest, std::string& value) {
  while (!rest.empty()) {
    char c = rest.front();
    rest.remove_prefix(1);
    if (c == '"') return true;
    if (c == '\\' && !rest.empty() && (rest.front() == '"' || rest.front() == '\\')) {
      c = rest.front();
      rest.remove_prefix(1);
    }
    value += c;
  }
  return false;
}

bool TakePair(std::string_view& rest, Entries& entries) {
  const size_t equals = rest.find('=');
  if (equals == 0 || equals == std::string_view::npos || rest.find(' ') < equals) return false;
  const std::string key(rest.substr(0, equals));
  if (std::any_of(entries.begin(), entries.end(), [&key](const auto& entry) { return entry.first == key; })) {
    return false;
  }
  rest.remove_prefix(equals + 1);
  std::string value;
  if (!rest.empty() && rest.front() == '"') {
    rest.remove_prefix(1);
    if (!TakeQuoted(rest, value) || (!rest.empty() && rest.front() != ' ')) return false;
  } else {
    value = rest.substr(0, rest.find(' '));
    rest.remove_prefix(value.size());
  }
  while (!rest.empty() && rest.front() == ' ') rest.remove_prefix(1);
  entries.emplace_back(key, value);
  return true;
}

bool ReadPairs(std::string_view data, Entries& entries) {
  while (!data.empty()) {
    if (!TakePair(data, entries)) return false;
  }
  return !entries.empty();
}

}  // namespace

bool IsRawCommand(std::string_view line) {
  return line.substr(0, kActionPrefix.size()) == kActionPrefix;
}

Command ParseRawCommand(std::string_view line) {
  const size_t blank = line.find(' ');
  Command command;
  command.action = line.substr(0, blank);
  command.text = blank == std::string_view::npos ? "" : line.substr(blank + 1);
  const ActionInfo* action = FindAction(command.action);
  if (action != nullptr && action->takes_bundle) {
    command.is_bundle = ReadPairs(command.text, command.entries);
    if (!command.is_bundle) command.entries.clear();
  }
  return command;
}

std::string UnknownActionWarning(const Command& command) {
  if (FindAction(command.action) != nullptr) return "";
  std::vector<std::string> names;
  for (const ActionInfo& action : Actions()) names.emplace_back(action.name);
  return "There is no action " + command.action + "; it is sent all the same." +
         DidYouMean(command.action, names);
}

}  // namespace corvis::voice
