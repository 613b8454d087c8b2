// The connection between this process and the TV's voice service: one local message port for all pages, and
// the messages to the service.
#ifndef CORVIS_VOICE_INTERACTION_VOICE_INTERACTION_CHANNEL_H_
#define CORVIS_VOICE_INTERACTION_VOICE_INTERACTION_CHANNEL_H_

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

#include "nurvo/bundle.h"

namespace extension::voice_interaction {

// Thrown if a message is larger than the service's port accepts. Does not leave the channel.
class MessageSizeExceedException : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Receives a command of the voice service: the action's name, the data text, and the user data of Init.
using CommandReceivedCallback = void (*)(const std::string& command, const std::string& data,
                                         void* user_data);

// A single object per process, never destroyed. It serves the last caller of Init and does not know about
// pages. Used on the thread that runs the platform's main loop. Failures are logged; only Init throws.
class VoiceInteractionChannel {
 public:
  static VoiceInteractionChannel& GetInstance();

  // Dispatches commands to `callback` with `user_data` (not owned) from now on, and uses `app_id` as the
  // application's id. Opens the port and registers the application with the service unless the port is
  // already open. Throws std::bad_alloc before it has changed anything.
  static void Init(CommandReceivedCallback callback, const std::string& app_id,
                   const std::string& sdk_version, void* user_data);

  // Passes null to the callback from now on if `user_data`, which is about to be destroyed, is that of Init.
  static void Forget(const void* user_data);

  // Unregisters from the service and closes the port, if it is open.
  static void Clear();

  // Calls Clear and opens the port again, for a service that has restarted.
  static void Reset();

  // Sends a command word and its data as one message. Data that is too large for one message is sent in
  // "partial_result" pieces, in order.
  static void Send(const std::string& command, const std::string& data);

  // The port's callback. The platform owns `message`. Logs any exception of the callback of Init.
  static void OnMessageReceived(int local_port_id, const char* remote_app_id, const char* remote_port,
                                bool trusted_remote_port, bundle* message, void* user_data);

 private:
  VoiceInteractionChannel() = default;

  void InitializeMessagePort();
  void ClearMessagePort();

  // `data` is all or part of a NUL-terminated text. `total_data_length` is the length of the whole data in
  // bytes if `data` is a piece, otherwise 0.
  void SendMessage(const std::string& command, std::string_view data, int total_data_length);
  // Splits the data of `message`, which is too large, in two and sends both pieces.
  void SendPartialResult(bundle* message);

  void FillMessage(bundle* message, const std::string& command, std::string_view data,
                   int total_data_length) const;

  // The result of registering the port: an id greater than 0, or a platform error code.
  int32_t local_port_id_ = 0;
  std::string app_id_;
  std::string sdk_version_;
  void* user_data_ = nullptr;
  CommandReceivedCallback callback_ = nullptr;
};

}  // namespace extension::voice_interaction

#endif  // CORVIS_VOICE_INTERACTION_VOICE_INTERACTION_CHANNEL_H_
