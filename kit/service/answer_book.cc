// Assigns answers to commands in the order in which the commands were sent.
#include "service/answer_book.h"

#include <algorithm>
#include <utility>

#include "service/wire.h"

namespace corvis::kit {

namespace {

constexpr const char* kContextRequest = "ACTION_REQUEST_APP_CONTEXT";

// The command that a message with this word answers. A page without a callback for context requests refuses
// them with "result", so a "result" that fits no other command answers a context request.
template <typename Commands>
auto FindOwed(Commands& commands, const std::string& word) {
  const auto is_context = [](const auto& command) { return command.action == kContextRequest; };
  if (word == wire::kAppContext) return std::find_if(commands.begin(), commands.end(), is_context);
  const auto found = std::find_if_not(commands.begin(), commands.end(), is_context);
  return found == commands.end() ? commands.begin() : found;
}

}  // namespace

uint64_t AnswerBook::Note(const std::string& app_id, const std::string& action, Clock::time_point now) {
  auto& commands = accounts_[app_id].commands;
  commands.push_back({++last_id_, action, now});
  if (commands.size() > kMostOwed) commands.pop_front();
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

Answer AnswerBook::Break(Account& account, std::string problem, Clock::time_point now) {
  Answer answer = Settle(account, account.commands.begin(), now);
  answer.word = wire::kPartialResult;
  answer.pieces = account.joiner.pieces();
  answer.problem = std::move(problem);
  account.joiner.Clear();
  return answer;
}

// Reports a broken answer, unless the previous one was broken, too, and drops its pieces.
void AnswerBook::Refuse(Account& account, std::string problem, Clock::time_point now,
                        std::vector<Answer>& answers) {
  if (!account.is_doubtful) answers.push_back(Break(account, std::move(problem), now));
  account.joiner.Clear();
  account.is_doubtful = true;
}

PieceJoiner::State AnswerBook::Join(Account& account, const std::string& piece, size_t total,
                                    Clock::time_point now, std::vector<Answer>& answers) {
  const bool is_first = account.joiner.is_empty();
  const PieceJoiner::State state = account.joiner.Add(piece, total);
  if (is_first) account.first_piece = now;
  if (state != PieceJoiner::State::kBroken) {
    if (is_first) account.is_doubtful = false;
    return state;
  }
  Refuse(account, "The pieces of the answer don't fit each other; send the command again.", now, answers);
  if (is_first || account.commands.empty()) return state;
  // A piece that does not fit this answer may start the next one.
  account.first_piece = now;
  return account.joiner.Add(piece, total);
}

void AnswerBook::ReceivePiece(Account& account, const std::string& piece, size_t total, Clock::time_point now,
                              std::vector<Answer>& answers) {
  PieceJoiner& joiner = account.joiner;
  const PieceJoiner::State state = Join(account, piece, total, now, answers);
  if (joiner.is_too_large() && !account.is_doubtful) {
    const std::string sizes = std::to_string(total) + " bytes; at most " +
                              std::to_string(PieceJoiner::kLargestAnswer) + " are accepted.";
    Refuse(account, "The answer has " + sizes, now, answers);
    // The joiner counts its remaining pieces without keeping them.
    joiner.Add(piece, total);
  }
  if (state != PieceJoiner::State::kComplete) return;
  if (joiner.is_too_large()) return joiner.Clear();
  Answer answer = Settle(account, account.commands.begin(), now);
  answer.word = wire::kPartialResult;
  answer.pieces = joiner.pieces();
  answer.data = joiner.Take();
  answer.first_piece = answer.took - (now - account.first_piece);
  answers.push_back(std::move(answer));
}

std::vector<Answer> AnswerBook::Receive(const std::string& app_id, const std::string& word,
                                        const std::string& data, size_t total, Clock::time_point now) {
  if (accounts_.size() >= kMostApps && accounts_.count(app_id) == 0) return {};
  Account& account = accounts_[app_id];
  std::vector<Answer> answers;
  if (word == wire::kPartialResult) {
    ReceivePiece(account, data, total, now, answers);
    return answers;
  }
  if (!account.joiner.is_empty()) {
    Refuse(account, "The answer is incomplete: pieces are missing; send the command again.", now, answers);
  }
  account.is_doubtful = false;
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
