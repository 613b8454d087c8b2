// Commands and their answers, first come first served.
#include "core/answer_book.h"

#include <algorithm>

namespace corvis::voice {

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

Answer AnswerBook::Settle(Account& account, Clock::time_point now) {
  Answer answer;
  if (account.commands.empty()) return answer;
  const Command command = account.commands.front();
  account.commands.pop_front();
  answer.command_id = command.id;
  answer.action = command.action;
  answer.took = now - command.sent;
  answer.first_piece = answer.took;
  return answer;
}

std::optional<Answer> AnswerBook::Take(const std::string& app_id, const std::string& word,
                                       const std::string& data, size_t total, Clock::time_point now,
                                       std::string& problem) {
  Account& account = accounts_[app_id];
  if (word != "partial_result") {
    if (!account.joiner.is_empty())
      problem = "An answer in pieces broke off; what had come of it is dropped.";
    account.joiner.Clear();
    Answer answer = Settle(account, now);
    answer.word = word;
    answer.data = data;
    return answer;
  }
  if (account.joiner.is_empty()) account.first_piece = now;
  const PieceJoiner::State state = account.joiner.Add(data, total);
  if (state == PieceJoiner::State::kBroken)
    problem = "The pieces of an answer don't fit each other; they are dropped.";
  if (state != PieceJoiner::State::kComplete) return {};
  Answer answer = Settle(account, now);
  answer.word = word;
  answer.pieces = account.joiner.pieces();
  answer.data = account.joiner.Take();
  answer.first_piece = answer.took - (now - account.first_piece);
  return answer;
}

void AnswerBook::Clear(const std::string& app_id) {
  accounts_.erase(app_id);
}

size_t AnswerBook::Owed(const std::string& app_id) const {
  const auto account = accounts_.find(app_id);
  return account == accounts_.end() ? 0 : account->second.commands.size();
}

}  // namespace corvis::voice
