// Which command an answer belongs to. Answers carry no identifier, but every page answers each command once
// and in order, so an answer belongs to the oldest command of its application that is owed one.
#ifndef CORVIS_VOICE_CORE_ANSWER_BOOK_H_
#define CORVIS_VOICE_CORE_ANSWER_BOOK_H_

#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>

#include "core/piece_joiner.h"

namespace corvis::voice {

using Clock = std::chrono::steady_clock;

// A command's answer, whole.
struct Answer {
  uint64_t command_id = 0;
  std::string action;
  // "result" or "appContext"; "partial_result" for an answer that came in pieces.
  std::string word;
  std::string data;
  int pieces = 1;
  Clock::duration took{};
  // When the answer had begun to arrive; a single message begins and ends at once.
  Clock::duration first_piece{};
};

class AnswerBook {
 public:
  // Notes that a command has been sent; returns its id.
  uint64_t Note(const std::string& app_id, const std::string& action, Clock::time_point now);
  // A command that could not be sent after all is owed nothing.
  void Forget(const std::string& app_id, uint64_t command_id);

  // Takes a message of the application ("result", "appContext", "partial_result"). Gives the answer when it
  // is whole; nothing while pieces are missing. An answer that no command is owed has the id 0. Pieces that
  // don't fit give nothing and set `problem` to a sentence.
  std::optional<Answer> Take(const std::string& app_id, const std::string& word, const std::string& data,
                             size_t total, Clock::time_point now, std::string& problem);

  // The application begins anew: nothing is owed any more.
  void Clear(const std::string& app_id);

  // How many answers the application owes.
  size_t Owed(const std::string& app_id) const;

 private:
  struct Command {
    uint64_t id;
    std::string action;
    Clock::time_point sent;
  };
  struct Account {
    std::deque<Command> commands;
    PieceJoiner joiner;
    Clock::time_point first_piece;
  };

  static Answer Settle(Account& account, Clock::time_point now);

  std::map<std::string, Account> accounts_;
  uint64_t last_id_ = 0;
};

}  // namespace corvis::voice

#endif  // CORVIS_VOICE_CORE_ANSWER_BOOK_H_
