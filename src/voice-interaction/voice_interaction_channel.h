// The link between this process and the TV's voice service: one local message port for all pages, and the
// messages that go out to the service.
#ifndef CORVIS_VOICE_INTERACTION_VOICE_INTERACTION_CHANNEL_H_
#define CORVIS_VOICE_INTERACTION_VOICE_INTERACTION_CHANNEL_H_

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

#include "nurvo/bundle.h"

namespace extension::voice_interaction {

// A message is larger than the service's port takes. Does not leave the channel.
class MessageSizeExceedException : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Receives a command of the voice service: the action's name, the data text, and the user data of Init.
using CommandReceivedCallback = void (*)(const std::string& command, const std::string& data,
                                         void* user_data);

// One object for the process, never destroyed. It serves whoever called Init last, and knows nothing of
// pages. Used on the thread that runs the platform's main loop; nothing here throws, failures are logged.
class VoiceInteractionChannel {
 public:
  static VoiceInteractionChannel& GetInstance();

  // From now on commands go to `callback` with `user_data` (not owned), and the service knows us as
  // `app_id`. Opens the port and announces the application unless the port is open already.
  static void Init(CommandReceivedCallback callback, const std::string& app_id,
                   const std::string& sdk_version, void* user_data);

  // Unregisters from the service and closes the port, if it is open.
  static void Clear();

  // Clear and open again, for a service that has lost its memory.
  static void Reset();

  // Sends one message: a command word and its data. Data too large for one message leaves in
  // "partial_result" pieces, in order.
  static void Send(const std::string& command, const std::string& data);

  // The port's callback. The platform owns `message`.
  static void OnMessageReceived(int local_port_id, const char* remote_app_id, const char* remote_port,
                                bool trusted_remote_port, bundle* message, void* user_data);

 private:
  VoiceInteractionChannel() = default;

  void InitializeMessagePort();
  void ClearMessagePort();

  // `data` is, or is a part of, a text that ends with a NUL. `total_data_length` is the whole data's length
  // in bytes when `data` is a piece, and 0 otherwise.
  void SendMessage(const std::string& command, std::string_view data, int total_data_length);
  // Cuts the data of `message`, which was too large, in two and sends both pieces.
  void SendPartialResult(bundle* message);

  void FillMessage(bundle* message, const std::string& command, std::string_view data,
                   int total_data_length) const;

  // What registering the port returned: an id greater than 0, or a platform error code.
  int32_t local_port_id_ = 0;
  std::string app_id_;
  std::string sdk_version_;
  void* user_data_ = nullptr;
  CommandReceivedCallback callback_ = nullptr;
};

}  // namespace extension::voice_interaction

#endif  // CORVIS_VOICE_INTERACTION_VOICE_INTERACTION_CHANNEL_H_
