// The statements of voice scripts. To add one, write a function that reads it and add it to the table in
// statements.cc.
#ifndef CORVIS_KIT_SCRIPT_STATEMENTS_H_
#define CORVIS_KIT_SCRIPT_STATEMENTS_H_

#include <string>
#include <string_view>
#include <vector>

#include "script/line_reader.h"
#include "script/script.h"

namespace corvis::kit {

struct Statement {
  const char* word;
  // Parses the rest of the line and sets the step's role and action.
  void (*read)(LineReader& line, Step& step);
};

// Returns null for an unknown word.
const Statement* FindStatement(std::string_view word);
std::vector<std::string> StatementWords();

// dialogue_statements.cc
void ReadSay(LineReader& line, Step& step);
void ReadSend(LineReader& line, Step& step);
// Makes the step say a phrase in the conversation's language.
void SetPhrase(Step& step, std::string phrase);
// Makes the step send a command; `said` is the command as the user wrote it.
void SetCommand(Step& step, Command command, std::string said);
void ReadInject(LineReader& line, Step& step);
void ReadExpect(LineReader& line, Step& step);
void ReadWithin(LineReader& line, Step& step);

// page_statements.cc
void ReadShow(LineReader& line, Step& step);
void ReadValue(LineReader& line, Step& step);

// key_statements.cc
void ReadPress(LineReader& line, Step& step);
void ReadType(LineReader& line, Step& step);

// item_statements.cc
void ReadItems(LineReader& line, Step& step);
void ReadItem(LineReader& line, Step& step);

// run_statements.cc
void ReadTest(LineReader& line, Step& step);
void ReadNote(LineReader& line, Step& step);
void ReadReload(LineReader& line, Step& step);
void ReadOpen(LineReader& line, Step& step);
void ReadRestart(LineReader& line, Step& step);
void ReadLanguage(LineReader& line, Step& step);
void ReadPhrases(LineReader& line, Step& step);
void ReadPrivileges(LineReader& line, Step& step);
void ReadClear(LineReader& line, Step& step);
void ReadTimeout(LineReader& line, Step& step);
void ReadWait(LineReader& line, Step& step);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_SCRIPT_STATEMENTS_H_
