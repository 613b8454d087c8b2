// Commands and their answers, first come first served.
#include "service/answer_book.h"

#include <algorithm>
#include <utility>

namespace corvis::kit {

namespace {

constexpr const char* kPiece = "partial_result";
constexpr const char* kContextAnswer = "appContext";
constexpr const char* kContextRequest = "ACTION_REQUEST_APP_CONTEXT";

// The command that a message with this word answers. A context request that the page has no callback for is
// refused with a "result", so that road is the second choice of a "result".
template <typename Commands>
auto FindOwed(Commands& commands, const std::string& word) {
  const auto is_context = [](const auto& command) { return command.action == kContextRequest; };
  if (word == kContextAnswer) return std::find_if(commands.begin(), commands.end(), is_context);
  const auto found = std::find_if_not(commands.begin(), commands.end(), is_context);
  return found == commands.end() ? commands.begin() : found;
}

}  // namespace

uint64_t AnswerBook::Note(const std::string& app_id, const std::string& action, Clock::time_point now) {
  accounts_[app_id].commands.push_back({++last_id_, action, now});
  return last_id_;
}

void AnswerBook::Forget(const std::string& app_id, uint64_t command_id) {
  auto& commands = accounts_[app_id].commands;
  commands.erase(std::remove_if(commands.begin(), commands.end(),
                                [command_id](const Command& command) { return command.id == command_id; }),
                 commands.end());
}

Answer AnswerBook::Settle(Account& account, const std::deque<Command>::iterator& command,
                          Clock::time_point now) {
  Answer answer;
  if (command == account.commands.end()) return answer;
  answer.command_id = command->id;
  answer.action = command->action;
  answer.took = now - command->sent;
  answer.first_piece = answer.took;
  account.commands.erase(command);
  return answer;
}

Answer AnswerBook::Break(Account& account, const char* problem, Clock::time_point now) {
  Answer answer = Settle(account, account.commands.begin(), now);
  answer.word = kPiece;
  answer.pieces = account.joiner.pieces();
  answer.is_broken = true;
  answer.problem = problem;
  account.joiner.Clear();
  return answer;
}

void AnswerBook::ReceivePiece(Account& account, const std::string& piece, size_t total, Clock::time_point now,
                              std::vector<Answer>& answers) {
  if (account.joiner.is_empty()) {
    account.first_piece = now;
    account.is_doubtful = false;
  }
  PieceJoiner::State state = account.joiner.Add(piece, total);
  if (state == PieceJoiner::State::kBroken) {
    if (!account.is_doubtful) {
      answers.push_back(Break(account, "The pieces of the answer don't fit each other; say it again.", now));
    }
    account.joiner.Clear();
    // What doesn't fit the answer may begin the next one.
    account.first_piece = now;
    account.is_doubtful = true;
    if (!account.commands.empty()) state = account.joiner.Add(piece, total);
  }
  if (state != PieceJoiner::State::kComplete) return;
  Answer answer = Settle(account, account.commands.begin(), now);
  answer.word = kPiece;
  answer.pieces = account.joiner.pieces();
  answer.data = account.joiner.Take();
  answer.first_piece = answer.took - (now - account.first_piece);
  answers.push_back(std::move(answer));
}

std::vector<Answer> AnswerBook::Receive(const std::string& app_id, const std::string& word,
                                        const std::string& data, size_t total, Clock::time_point now) {
  Account& account = accounts_[app_id];
  std::vector<Answer> answers;
  if (word == kPiece) {
    ReceivePiece(account, data, total, now, answers);
    return answers;
  }
  if (!account.joiner.is_empty() && !account.is_doubtful) {
    answers.push_back(Break(account, "The answer broke off: not all of its pieces came; say it again.", now));
  }
  account.joiner.Clear();
  Answer answer = Settle(account, FindOwed(account.commands, word), now);
  answer.word = word;
  answer.data = data;
  answers.push_back(std::move(answer));
  return answers;
}

void AnswerBook::Clear(const std::string& app_id) {
  accounts_.erase(app_id);
}

size_t AnswerBook::Owed(const std::string& app_id) const {
  const auto account = accounts_.find(app_id);
  return account == accounts_.end() ? 0 : account->second.commands.size();
}

}  // namespace corvis::kit
