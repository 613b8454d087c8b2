// Reading raw commands.
#include "language/raw_command.h"

#include <algorithm>
#include <cctype>
#include <set>

#include "language/suggestions.h"

namespace corvis::kit {

namespace {

constexpr std::string_view kActionPrefix = "ACTION_";

// Whether data is what a reader looks for; data that isn't is a plain text.
using Readable = Result<bool>;

// Takes a text after its opening quotation mark. False when the closing one is missing.
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

// Reads key=value pairs, from the front to the end.
class PairReader {
 public:
  explicit PairReader(std::string_view data) : rest_(data) {}

  Readable ReadAll(Entries& entries) {
    Readable are_pairs = !rest_.empty();
    while (are_pairs && *are_pairs && !rest_.empty()) are_pairs = ReadPair(entries);
    return are_pairs;
  }

 private:
  Readable ReadPair(Entries& entries) {
    // A key with a NUL would end there in the bundle.
    const size_t end = rest_.find_first_of(std::string_view("= \"\0", 4));
    if (end == 0 || end == std::string_view::npos || rest_[end] != '=') return false;
    const std::string key(rest_.substr(0, end));
    rest_.remove_prefix(end + 1);
    std::string value;
    Readable is_value = ReadValue(key, value);
    if (!is_value || !*is_value) return is_value;
    if (!keys_.insert(key).second) return FailToRead("Duplicate key " + key);
    entries.emplace_back(key, value);
    rest_.remove_prefix(std::min(rest_.find_first_not_of(' '), rest_.size()));
    return true;
  }

  Readable ReadValue(const std::string& key, std::string& value) {
    if (rest_.empty() || rest_.front() != '"') {
      value = rest_.substr(0, rest_.find(' '));
      rest_.remove_prefix(value.size());
      return true;
    }
    rest_.remove_prefix(1);
    if (!TakeQuoted(rest_, value)) return FailToRead("Missing closing quotation mark of " + key);
    return rest_.empty() || rest_.front() == ' ';
  }

  static tl::unexpected<Error> FailToRead(const std::string& what) {
    return Fail(what + ". To send all of the data as one text, put it in quotation marks.");
  }

  std::string_view rest_;
  std::set<std::string> keys_;
};

// The data of an action that takes a bundle.
Status ReadBundleData(Command& command) {
  std::string_view rest = command.text;
  if (!rest.empty() && rest.front() == '"') {
    std::string quoted;
    rest.remove_prefix(1);
    if (!TakeQuoted(rest, quoted)) return Fail("Missing closing quotation mark.");
    if (rest.empty()) command.text = quoted;
    return {};
  }
  const Readable are_pairs = PairReader(rest).ReadAll(command.entries);
  if (!are_pairs) return Fail(are_pairs.error());
  command.is_bundle = *are_pairs;
  if (!command.is_bundle) command.entries.clear();
  return {};
}

std::string_view WithoutPrefix(std::string_view name) {
  return IsRawCommand(name) ? name.substr(kActionPrefix.size()) : name;
}

}  // namespace

bool IsRawCommand(std::string_view line) {
  return line.substr(0, kActionPrefix.size()) == kActionPrefix;
}

Result<Command> ParseRawCommand(std::string_view line) {
  const size_t space = line.find(' ');
  Command command;
  command.action = line.substr(0, space);
  command.text = space == std::string_view::npos ? "" : line.substr(space + 1);
  const ActionInfo* action = FindAction(command.action);
  if (action == nullptr || !action->takes_bundle) return command;
  const Status read = ReadBundleData(command);
  if (!read) return Fail(read.error());
  return command;
}

std::string UnknownActionWarning(const Command& command) {
  if (FindAction(command.action) != nullptr) return "";
  return "Unknown action " + command.action + ". It is sent anyway." + DidYouMeanAction(command.action);
}

std::string DidYouMeanAction(const std::string& action) {
  // The common prefix would make any two names look alike.
  std::string word(WithoutPrefix(action));
  std::transform(word.begin(), word.end(), word.begin(),
                 [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  std::vector<std::string> names;
  for (const ActionInfo& info : Actions()) names.emplace_back(WithoutPrefix(info.name));
  const std::string closest = ClosestTo(word, names);
  return closest.empty() ? "" : " Did you mean \"" + std::string(kActionPrefix) + closest + "\"?";
}

}  // namespace corvis::kit
