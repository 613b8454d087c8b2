// The table of statements.
#include "script/statements.h"

#include <algorithm>
#include <iterator>

namespace corvis::kit {

namespace {

constexpr Statement kStatements[] = {
    {"test", ReadTest},
    {"note", ReadNote},
    {"say", ReadSay},
    {"send", ReadSend},
    {"inject", ReadInject},
    {"expect", ReadExpect},
    {"within", ReadWithin},
    {"show", ReadShow},
    {"value", ReadValue},
    {"press", ReadPress},
    {"type", ReadType},
    {"items", ReadItems},
    {"item", ReadItem},
    {"reload", ReadReload},
    {"open", ReadOpen},
    {"restart", ReadRestart},
    {"privileges", ReadPrivileges},
    {"language", ReadLanguage},
    {"phrases", ReadPhrases},
    {"clear", ReadClear},
    {"timeout", ReadTimeout},
    {"wait", ReadWait},
};

}  // namespace

const Statement* FindStatement(std::string_view word) {
  const auto* found = std::find_if(std::begin(kStatements), std::end(kStatements),
                                   [word](const Statement& statement) { return statement.word == word; });
  return found == std::end(kStatements) ? nullptr : found;
}

std::vector<std::string> StatementWords() {
  std::vector<std::string> words;
  for (const Statement& statement : kStatements) words.emplace_back(statement.word);
  return words;
}

}  // namespace corvis::kit
