// The voice service on the bus: registers applications, sends commands and receives answers.
#ifndef CORVIS_KIT_SERVICE_VOICE_SERVICE_H_
#define CORVIS_KIT_SERVICE_VOICE_SERVICE_H_

#include <chrono>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "base/result.h"
#include "language/actions.h"
#include "nurvo/bundle.h"
#include "nurvo_desktop/app_watch.h"
#include "service/answer_book.h"

namespace corvis::kit {

// Runs on the main loop. Create one per process.
class VoiceService {
 public:
  // Receives notices that belong to no command: departures, late and broken answers. Of many in a row only
  // the first are reported.
  using Notice = std::function<void(const std::string& sentence)>;

  // Limits on what applications can make the service store. Beyond them, further applications are ignored and
  // the oldest answers are dropped.
  static constexpr size_t kMostApps = AnswerBook::kMostApps;
  static constexpr size_t kMostAwaited = 10'000;
  static constexpr size_t kMostAnswerBytes = 4 * PieceJoiner::kLargestAnswer;
  static constexpr int kMostNotices = 20;

  explicit VoiceService(Notice notice) : notice_(std::move(notice)) {}
  ~VoiceService();
  VoiceService(const VoiceService&) = delete;
  VoiceService& operator=(const VoiceService&) = delete;

  // Opens the port and announces the start.
  Status Start();

  // Simulates a restart: forgets all applications, closes and reopens the port, announces the start.
  Status Restart();

  // The registered applications in the order of registration.
  const std::vector<std::string>& apps() const { return apps_; }
  bool HasApp(const std::string& app_id) const;
  // The number of times that an application has registered.
  int registrations(const std::string& app_id) const;

  // Sends a command and waits for its answer.
  Result<Answer> Say(const std::string& app_id, const Command& command, std::chrono::milliseconds timeout);

  // Sends a command without waiting for the answer. Returns its id.
  Result<uint64_t> Send(const std::string& app_id, const Command& command);
  // Waits for the answer to a command. Fails if the answer is broken, if the application leaves the bus, or
  // after `timeout`.
  Result<Answer> Await(const std::string& app_id, uint64_t command_id, std::chrono::milliseconds timeout);

  // Sends a bundle unchanged. If it is a complete command (with an action and data), returns an id for Await;
  // otherwise returns 0.
  Result<uint64_t> Inject(const std::string& app_id, const Entries& entries);

  // Drops the answer to this command silently when it arrives.
  void Ignore(uint64_t command_id);

 private:
  Status SendEntries(const std::string& app_id, const Entries& entries);
  static void OnMessage(int port_id, const char* remote_app_id, const char* remote_port, bool is_trusted,
                        bundle* message, void* service);
  static void OnAppChange(const char* app_id, bool is_running, void* service);

  Status OpenPort();
  void ClosePort();
  void Register(const std::string& app_id);
  void Unregister(const std::string& app_id);
  void TakeAnswer(const std::string& app_id, const std::string& word, bundle* message);
  // Delivers an answer to its waiting command, or reports it as a notice.
  void HandOver(const std::string& app_id, Answer answer);
  void Keep(Answer answer);
  // Stops awaiting a command. Returns its answer if it has arrived.
  std::optional<Answer> Release(uint64_t command_id);
  void Watch(const std::string& app_id);
  void Report(const std::string& sentence);

  Notice notice_;
  // The number of notices since the last command.
  int notices_ = 0;
  int port_id_ = 0;
  std::vector<std::string> apps_;
  std::map<std::string, int> registrations_;
  std::map<std::string, app_watch_h> watches_;
  AnswerBook book_;
  // The commands that can be awaited, oldest first, with the answers that have arrived. An answer to any
  // other command is late.
  std::map<uint64_t, std::optional<Answer>> awaited_;
  size_t answer_bytes_ = 0;
  // The commands whose answers are dropped; at most kMostAwaited.
  std::set<uint64_t> ignored_;
};

}  // namespace corvis::kit

#endif  // CORVIS_KIT_SERVICE_VOICE_SERVICE_H_
