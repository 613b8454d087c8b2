// Reads the policy file.
#include "access/policy.h"

#include <cstdlib>
#include <fstream>
#include <string>

#include "nurvo/log.h"

namespace nurvo {

namespace {

constexpr const char* kTag = "NURVO_ACCESS";
constexpr std::string_view kWhiteSpace = " \t\r";

// Removes the first word from `line` and returns it; empty at the end of the line.
std::string_view TakeWord(std::string_view& line) {
  line.remove_prefix(std::min(line.find_first_not_of(kWhiteSpace), line.size()));
  const std::string_view word = line.substr(0, line.find_first_of(kWhiteSpace));
  line.remove_prefix(word.size());
  return word;
}

bool isGrant(std::string_view line, std::string_view app_id, std::string_view privilege) {
  line = line.substr(0, line.find('#'));
  const std::string_view first = TakeWord(line);
  const std::string_view second = TakeWord(line);
  return first == app_id && second == privilege && TakeWord(line).empty();
}

}  // namespace

bool isGranted(std::string_view app_id, std::string_view privilege) {
  const char* const path = std::getenv("NURVO_POLICY");
  if (path == nullptr || app_id.empty() || privilege.empty()) return false;
  std::ifstream policy(path);
  if (!policy) log_print(NURVO_LOG_WARN, kTag, "Can't read the policy file %s; nothing is granted.", path);
  for (std::string line; std::getline(policy, line);) {
    if (isGrant(line, app_id, privilege)) return true;
  }
  return false;
}

}  // namespace nurvo
