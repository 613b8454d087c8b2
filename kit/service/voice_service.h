// The voice service on the bus: its port, the register of applications, commands out and answers in.
#ifndef CORVIS_KIT_SERVICE_VOICE_SERVICE_H_
#define CORVIS_KIT_SERVICE_VOICE_SERVICE_H_

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "language/actions.h"
#include "service/answer_book.h"
#include "nurvo/bundle.h"
#include "nurvo_desktop/app_watch.h"

namespace corvis::kit {

// What became of a command.
struct Outcome {
  bool is_answered = false;
  Answer answer;
  // Why there is no answer, a sentence that says what to do; empty otherwise.
  std::string problem;
};

// Lives on the main loop. One in a process.
class VoiceService {
 public:
  // Tells of what happens beside the commands: registrations, departures, late and broken answers.
  using Notice = std::function<void(const std::string& sentence)>;

  explicit VoiceService(Notice notice) : notice_(std::move(notice)) {}
  ~VoiceService();
  VoiceService(const VoiceService&) = delete;
  VoiceService& operator=(const VoiceService&) = delete;

  // Opens the port and announces the start. Returns a sentence on failure, empty on success.
  std::string Start();

  // Plays a restart: forgets every application, closes and opens the port, announces the start.
  std::string Restart();

  // The registered applications, the last one to register last.
  const std::vector<std::string>& apps() const { return apps_; }
  bool HasApp(const std::string& app_id) const;
  // How often an application registered so far.
  int registrations(const std::string& app_id) const;

  // Sends a command and waits for its answer.
  Outcome Say(const std::string& app_id, const Command& command, std::chrono::milliseconds timeout);

  // Sends a command and does not wait. Returns its id, or 0 and a sentence.
  uint64_t Send(const std::string& app_id, const Command& command, std::string& problem);
  // Waits for the answer to a command that was sent.
  Outcome Await(const std::string& app_id, uint64_t command_id, std::chrono::milliseconds timeout);

  // Sends a bundle as it is, whatever it holds. A whole command (it has an action and data) is owed an
  // answer, which Await gives; for anything else, and on failure, the id is 0.
  uint64_t Inject(const std::string& app_id, const Entries& entries, std::string& problem);

 private:
  // Returns a sentence on failure.
  std::string SendEntries(const std::string& app_id, const Entries& entries);
  static void OnMessage(int port_id, const char* remote_app_id, const char* remote_port, bool is_trusted,
                        bundle* message, void* service);
  static void OnAppChange(const char* app_id, bool is_running, void* service);

  std::string OpenPort();
  void ClosePort();
  void Register(const std::string& app_id);
  void Unregister(const std::string& app_id);
  void TakeAnswer(const std::string& app_id, const std::string& word, bundle* message);
  // To whoever waits for it, or as a notice.
  void HandOver(const std::string& app_id, Answer answer);
  void Watch(const std::string& app_id);

  Notice notice_;
  int port_id_ = 0;
  std::vector<std::string> apps_;
  std::map<std::string, int> registrations_;
  std::map<std::string, app_watch_h> watches_;
  AnswerBook book_;
  // Answers that arrived and have not been fetched.
  std::map<uint64_t, Answer> arrived_;
  // The command that Await waits for; answers to others that come meanwhile are late.
  std::vector<uint64_t> awaited_;
};

}  // namespace corvis::kit

#endif  // CORVIS_KIT_SERVICE_VOICE_SERVICE_H_
