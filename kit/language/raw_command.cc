// Reading raw commands.
#include "language/raw_command.h"

#include <algorithm>
#include <cctype>
#include <set>

#include "language/suggestions.h"

namespace corvis::kit {

namespace {

constexpr std::string_view kActionPrefix = "ACTION_";

enum class Reading { kDone, kIsText, kIsWrong };

// Takes a text from behind its first quotation mark. False when it does not end.
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
  PairReader(std::string_view data, std::string& problem) : rest_(data), problem_(problem) {}

  Reading ReadAll(Entries& entries) {
    Reading reading = rest_.empty() ? Reading::kIsText : Reading::kDone;
    while (reading == Reading::kDone && !rest_.empty()) reading = ReadPair(entries);
    return reading;
  }

 private:
  Reading ReadPair(Entries& entries) {
    // A key with a NUL would end there in the bundle.
    const size_t end = rest_.find_first_of(std::string_view("= \"\0", 4));
    if (end == 0 || end == std::string_view::npos || rest_[end] != '=') return Reading::kIsText;
    const std::string key(rest_.substr(0, end));
    rest_.remove_prefix(end + 1);
    std::string value;
    const Reading reading = ReadValue(key, value);
    if (reading != Reading::kDone) return reading;
    if (!keys_.insert(key).second) return Fail("The key " + key + " stands there twice");
    entries.emplace_back(key, value);
    rest_.remove_prefix(std::min(rest_.find_first_not_of(' '), rest_.size()));
    return Reading::kDone;
  }

  Reading ReadValue(const std::string& key, std::string& value) {
    if (rest_.empty() || rest_.front() != '"') {
      value = rest_.substr(0, rest_.find(' '));
      rest_.remove_prefix(value.size());
      return Reading::kDone;
    }
    rest_.remove_prefix(1);
    if (!TakeQuoted(rest_, value)) return Fail("The closing quotation mark of " + key + " is missing");
    return rest_.empty() || rest_.front() == ' ' ? Reading::kDone : Reading::kIsText;
  }

  Reading Fail(const std::string& what) {
    problem_ = what + "; put all of the data in quotation marks to send it as a text.";
    return Reading::kIsWrong;
  }

  std::string_view rest_;
  std::string& problem_;
  std::set<std::string> keys_;
};

// The data of an action that takes a bundle.
void ReadBundleData(Command& command, std::string& problem) {
  std::string_view rest = command.text;
  std::string quoted;
  if (!rest.empty() && rest.front() == '"') {
    rest.remove_prefix(1);
    if (!TakeQuoted(rest, quoted)) {
      problem = "The closing quotation mark is missing.";
    } else if (rest.empty()) {
      command.text = quoted;
    }
    return;
  }
  command.is_bundle = PairReader(rest, problem).ReadAll(command.entries) == Reading::kDone;
  if (!command.is_bundle) command.entries.clear();
}

std::string_view WithoutPrefix(std::string_view name) {
  return IsRawCommand(name) ? name.substr(kActionPrefix.size()) : name;
}

}  // namespace

bool IsRawCommand(std::string_view line) {
  return line.substr(0, kActionPrefix.size()) == kActionPrefix;
}

Command ParseRawCommand(std::string_view line, std::string* problem) {
  const size_t blank = line.find(' ');
  Command command;
  command.action = line.substr(0, blank);
  command.text = blank == std::string_view::npos ? "" : line.substr(blank + 1);
  const ActionInfo* action = FindAction(command.action);
  std::string ignored;
  if (action != nullptr && action->takes_bundle) {
    ReadBundleData(command, problem == nullptr ? ignored : *problem);
  }
  return command;
}

std::string UnknownActionWarning(const Command& command) {
  if (FindAction(command.action) != nullptr) return "";
  return "There is no action " + command.action + "; it is sent all the same." +
         DidYouMeanAction(command.action);
}

std::string DidYouMeanAction(const std::string& action) {
  // The prefix that all have would make them all look alike.
  std::string word(WithoutPrefix(action));
  std::transform(word.begin(), word.end(), word.begin(),
                 [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  std::vector<std::string> names;
  for (const ActionInfo& info : Actions()) names.emplace_back(WithoutPrefix(info.name));
  const std::string closest = ClosestTo(word, names);
  return closest.empty() ? "" : " Did you mean \"" + std::string(kActionPrefix) + closest + "\"?";
}

}  // namespace corvis::kit
