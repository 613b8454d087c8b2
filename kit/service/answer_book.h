// Assigns answers to commands. Answers carry no identifier, but a page answers each command once, and in
// order within each of two kinds: application contexts are sent as "appContext", everything else as "result".
// So an answer belongs to the oldest unanswered command of its kind. Plain C++ without GLib, because the npm
// module uses it, too.
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

// The complete answer to a command, or the reason why there is none.
struct Answer {
  uint64_t command_id = 0;
  std::string action;
  // "result" or "appContext"; "partial_result" for an answer in pieces.
  std::string word;
  // Empty if the answer is broken.
  std::string data;
  int pieces = 1;
  Clock::duration took{};
  // The time until the first piece arrived; equal to `took` for a single message.
  Clock::duration first_piece{};
  // Why the pieces don't form an answer; empty if they do.
  std::string problem;

  bool is_broken() const { return !problem.empty(); }
};

class AnswerBook {
 public:
  // Limits on what applications can make this object store. Beyond them the oldest owed answers are dropped,
  // and further applications are ignored.
  static constexpr size_t kMostOwed = 1000;
  static constexpr size_t kMostApps = 64;

  // Records that a command was sent. Returns its id.
  uint64_t Note(const std::string& app_id, const std::string& action, Clock::time_point now);
  // Removes a command that could not be sent.
  void Forget(const std::string& app_id, uint64_t command_id);

  // Handles a message of the application ("result", "appContext", "partial_result"). Returns the answers that
  // it completes: none while pieces are missing; a broken one if pieces don't fit, are too large or are
  // missing. Of consecutive broken pieces only the first is reported. An answer without a command has the id
  // 0.
  std::vector<Answer> Receive(const std::string& app_id, const std::string& word, const std::string& data,
                              size_t total, Clock::time_point now);

  // Forgets all commands of the application, after it registers again.
  void Clear(const std::string& app_id);

  // The number of answers that the application owes.
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
    // The previous pieces were broken, so the next ones may belong to the same broken answer.
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
