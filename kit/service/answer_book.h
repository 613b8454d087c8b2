// Which command an answer belongs to. Answers carry no identifier, but every page answers each command once,
// and in order on each of two roads: application contexts come as "appContext", all else as "result". So an
// answer belongs to the oldest command of its road that is owed one. Plain C++, for other programs than this
// service as well.
#ifndef CORVIS_KIT_SERVICE_ANSWER_BOOK_H_
#define CORVIS_KIT_SERVICE_ANSWER_BOOK_H_

#include <chrono>
#include <cstdint>
#include <deque>
#include <map>
#include <string>
#include <vector>

#include "service/piece_joiner.h"

namespace corvis::kit {

using Clock = std::chrono::steady_clock;

// A command's answer, whole; or the news that no whole answer will come.
struct Answer {
  uint64_t command_id = 0;
  std::string action;
  // "result" or "appContext"; "partial_result" for an answer that came in pieces.
  std::string word;
  // Empty when the answer is broken.
  std::string data;
  int pieces = 1;
  Clock::duration took{};
  // When the answer had begun to arrive; a single message begins and ends at once.
  Clock::duration first_piece{};
  // Why the answer's pieces don't make a whole; empty when they do.
  std::string problem;

  bool is_broken() const { return !problem.empty(); }
};

class AnswerBook {
 public:
  // What applications can make the book keep. Of more owed answers the oldest are given up; what more
  // applications send is dropped.
  static constexpr size_t kMostOwed = 1000;
  static constexpr size_t kMostApps = 64;

  // Notes that a command has been sent; returns its id.
  uint64_t Note(const std::string& app_id, const std::string& action, Clock::time_point now);
  // A command that could not be sent after all is owed nothing.
  void Forget(const std::string& app_id, uint64_t command_id);

  // Takes a message of the application ("result", "appContext", "partial_result"). Gives the answers that it
  // settles: none while pieces are missing, a broken one when pieces don't fit, are too many or broke off,
  // and what the message itself completes. More broken pieces in a row than one are not reported each. An
  // answer that no command is owed has the id 0.
  std::vector<Answer> Receive(const std::string& app_id, const std::string& word, const std::string& data,
                              size_t total, Clock::time_point now);

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
    // What comes follows broken pieces: the next answer's, or just more that is broken.
    bool is_doubtful = false;
  };

  static PieceJoiner::State Join(Account& account, const std::string& piece, size_t total,
                                 Clock::time_point now, std::vector<Answer>& answers);
  static void Refuse(Account& account, std::string problem, Clock::time_point now,
                     std::vector<Answer>& answers);
  static void ReceivePiece(Account& account, const std::string& piece, size_t total, Clock::time_point now,
                           std::vector<Answer>& answers);
  static Answer Settle(Account& account, const std::deque<Command>::iterator& command, Clock::time_point now);
  static Answer Break(Account& account, std::string problem, Clock::time_point now);

  std::map<std::string, Account> accounts_;
  uint64_t last_id_ = 0;
};

}  // namespace corvis::kit

#endif  // CORVIS_KIT_SERVICE_ANSWER_BOOK_H_
