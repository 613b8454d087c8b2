// The voice service on the bus: its port, the register of applications, commands out and answers in.
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

// Lives on the main loop. One in a process.
class VoiceService {
 public:
  // Takes what happens beside the commands: departures, late and broken answers. Of many in a row only the
  // first are reported.
  using Notice = std::function<void(const std::string& sentence)>;

  // What applications can make the service keep. What more applications send is ignored; of more answers the
  // oldest are dropped.
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

  // Plays a restart: forgets every application, closes and opens the port, announces the start.
  Status Restart();

  // The registered applications, the last one to register last.
  const std::vector<std::string>& apps() const { return apps_; }
  bool HasApp(const std::string& app_id) const;
  // How often an application registered so far.
  int registrations(const std::string& app_id) const;

  // Sends a command and waits for its answer.
  Result<Answer> Say(const std::string& app_id, const Command& command, std::chrono::milliseconds timeout);

  // Sends a command and does not wait. Gives its id.
  Result<uint64_t> Send(const std::string& app_id, const Command& command);
  // Waits for the answer to a command that was sent. Fails when it is broken, and when the application goes
  // away.
  Result<Answer> Await(const std::string& app_id, uint64_t command_id, std::chrono::milliseconds timeout);

  // Sends a bundle as it is, whatever it holds. A whole command (it has an action and data) is owed an
  // answer, which Await gives; for anything else the id is 0.
  Result<uint64_t> Inject(const std::string& app_id, const Entries& entries);

  // Nobody will ask for the answer to this command: it is dropped without a notice when it comes.
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
  // To whoever waits for it, or as a notice.
  void HandOver(const std::string& app_id, Answer answer);
  void Keep(Answer answer);
  // Awaits a command no longer; gives its answer, if it has come.
  std::optional<Answer> Release(uint64_t command_id);
  void Watch(const std::string& app_id);
  void Report(const std::string& sentence);

  Notice notice_;
  // Since the last command was sent.
  int notices_ = 0;
  int port_id_ = 0;
  std::vector<std::string> apps_;
  std::map<std::string, int> registrations_;
  std::map<std::string, app_watch_h> watches_;
  AnswerBook book_;
  // The commands that Await may be asked for, oldest first, with the answers that have come. Answers to other
  // commands are late.
  std::map<uint64_t, std::optional<Answer>> awaited_;
  size_t answer_bytes_ = 0;
  // The commands whose answers are dropped; of these, too, at most kMostAwaited.
  std::set<uint64_t> ignored_;
};

}  // namespace corvis::kit

#endif  // CORVIS_KIT_SERVICE_VOICE_SERVICE_H_
