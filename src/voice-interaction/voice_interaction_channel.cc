// Opens and closes the port, builds, measures and splits messages, and receives commands.
#include "voice-interaction/voice_interaction_channel.h"

#include <cstdlib>
#include <cstring>
#include <exception>
#include <new>
#include <utility>

#include "nurvo/message_port.h"
#include "voice-interaction/exception_text.h"
#include "voice-interaction/module_log.h"
#include "voice-interaction/platform_ptr.h"

namespace extension::voice_interaction {

namespace {

constexpr const char* kLocalPortName = "com.port.vif.voiceinteraction";
constexpr const char* kRemoteAppId = "com.kelvaro.tv.vif";
constexpr const char* kRemotePortName = "com.port.vif.voiceinteraction";

constexpr int kMaxEncodedLength = 12288;
// Pieces are split at a multiple of this many bytes.
constexpr size_t kCutAlignment = 12;

constexpr const char* kCommandKey = "command";
constexpr const char* kDataKey = "strData";
constexpr const char* kTotalKey = "totalDataLength";
constexpr const char* kVersionKey = "sdkVersion";

void AddText(bundle* message, const char* key, const char* value) {
  if (bundle_add(message, key, value) != 0) throw std::logic_error("Fail to create bundle for message");
}

// `data` is part of a NUL-terminated text, so it needs a copy only if it does not end where the text ends.
void AddData(bundle* message, std::string_view data) {
  const bool is_whole = *(data.data() + data.size()) == '\0';
  AddText(message, kDataKey, is_whole ? data.data() : std::string(data).c_str());
}

void CheckEncodedLength(bundle* message) {
  bundle_raw* text = nullptr;
  int length = 0;
  if (bundle_encode(message, &text, &length) != 0) throw std::logic_error("Fail to encode the message");
  const PlatformMemory<bundle_raw> owner(text);
  if (length > kMaxEncodedLength) throw MessageSizeExceedException("Size exceed its maximum");
}

void PostToService(bundle* message) {
  const int result = message_port_send_message(kRemoteAppId, kRemotePortName, message);
  if (result == MESSAGE_PORT_ERROR_MAX_EXCEEDED) {
    throw MessageSizeExceedException("MESSAGE_PORT_ERROR_MAX_EXCEEDED from message port");
  }
  if (result != 0) throw std::logic_error("Fail to send bundle for message");
}

// The returned text is owned by the message.
const char* ReadText(bundle* message, const char* key, const char* failure) {
  char* value = nullptr;
  if (bundle_get_str(message, key, &value) != 0 || value == nullptr) throw std::logic_error(failure);
  return value;
}

// The length of the whole data that `message` contains or is a piece of.
int TotalDataLength(bundle* message, std::string_view data) {
  char* total = nullptr;
  if (bundle_get_str(message, kTotalKey, &total) != 0 || total == nullptr)
    return static_cast<int>(data.size());
  constexpr int kDecimal = 10;
  return static_cast<int>(std::strtol(total, nullptr, kDecimal));
}

}  // namespace

VoiceInteractionChannel& VoiceInteractionChannel::GetInstance() {
  // Never destroyed, because the platform may call back until the process ends. In static memory, because a
  // page's destructor, which must not fail, may be the first caller.
  alignas(VoiceInteractionChannel) static unsigned char memory[sizeof(VoiceInteractionChannel)];
  static auto* const channel = new (memory) VoiceInteractionChannel;
  return *channel;
}

void VoiceInteractionChannel::Init(CommandReceivedCallback callback, const std::string& app_id,
                                   const std::string& sdk_version, void* user_data) {
  MODULE_INFO_F("Init [%s]", app_id.c_str());
  VoiceInteractionChannel& channel = GetInstance();
  std::string app_id_copy = app_id;
  std::string sdk_version_copy = sdk_version;
  channel.callback_ = callback;
  channel.app_id_ = std::move(app_id_copy);
  channel.sdk_version_ = std::move(sdk_version_copy);
  channel.user_data_ = user_data;
  channel.InitializeMessagePort();
}

void VoiceInteractionChannel::Forget(const void* user_data) {
  VoiceInteractionChannel& channel = GetInstance();
  if (channel.user_data_ == user_data) channel.user_data_ = nullptr;
}

void VoiceInteractionChannel::Clear() {
  MODULE_INFO("Clear");
  GetInstance().ClearMessagePort();
}

void VoiceInteractionChannel::Reset() {
  MODULE_INFO("Reset");
  GetInstance().ClearMessagePort();
  GetInstance().InitializeMessagePort();
}

void VoiceInteractionChannel::Send(const std::string& command, const std::string& data) {
  MODULE_INFO_F("Send [%s] [%s]", command.c_str(), data.c_str());
  GetInstance().SendMessage(command, data, 0);
}

void VoiceInteractionChannel::InitializeMessagePort() {
  MODULE_INFO("InitializeMessagePort");
  if (local_port_id_ > 0) return;
  local_port_id_ = message_port_register_local_port(kLocalPortName, OnMessageReceived, user_data_);
  SendMessage("register", app_id_, 0);
}

void VoiceInteractionChannel::ClearMessagePort() {
  MODULE_INFO("ClearMessagePort");
  if (local_port_id_ <= 0) return;
  SendMessage("unregister", app_id_, 0);
  if (message_port_unregister_local_port(local_port_id_) != 0) {
    MODULE_ERROR("Failed to unregister local port listener during instance destructor.");
  }
  local_port_id_ = 0;
}

void VoiceInteractionChannel::FillMessage(bundle* message, const std::string& command, std::string_view data,
                                          int total_data_length) const {
  AddText(message, kCommandKey, command.c_str());
  AddData(message, data);
  if (total_data_length > 0) AddText(message, kTotalKey, std::to_string(total_data_length).c_str());
  AddText(message, kVersionKey, sdk_version_.c_str());
}

void VoiceInteractionChannel::SendMessage(const std::string& command, std::string_view data,
                                          int total_data_length) {
  MODULE_INFO_F("SendMessage [%s]", command.c_str());
  const BundlePtr message(bundle_create());
  if (!message) return;
  try {
    try {
      FillMessage(message.get(), command, data, total_data_length);
      CheckEncodedLength(message.get());
      PostToService(message.get());
    } catch (const MessageSizeExceedException& error) {
      MODULE_INFO_F("%s", error.what());
      SendPartialResult(message.get());
    }
  } catch (const std::exception& error) {
    // Outside the inner block, because splitting can fail as well.
    MODULE_ERROR_F("%s", error.what());
  }
}

void VoiceInteractionChannel::SendPartialResult(bundle* message) {
  if (message == nullptr) throw std::logic_error("Invalid bundle argument");
  // Not a copy, because every level of the recursion would keep one.
  const std::string_view data = ReadText(message, kDataKey, "Invalid bundle data");
  const int total = TotalDataLength(message, data);
  const size_t half = data.size() / 2;
  const size_t cut = half - half % kCutAlignment;
  // With an empty first piece the second would be the whole data again, and the recursion would not end.
  if (cut == 0) throw std::logic_error("The message can't be cut into smaller pieces and is dropped");
  SendMessage("partial_result", data.substr(0, cut), total);
  SendMessage("partial_result", data.substr(cut), total);
}

void VoiceInteractionChannel::OnMessageReceived(int /*local_port_id*/, const char* /*remote_app_id*/,
                                                const char* /*remote_port*/, bool /*trusted_remote_port*/,
                                                bundle* message, void* /*user_data*/) {
  const VoiceInteractionChannel& channel = GetInstance();
  if (channel.callback_ == nullptr) {
    MODULE_ERROR("No Callback Member");
    return;
  }
  try {
    const std::string command = ReadText(message, kCommandKey, "Fail to get command from Message");
    const std::string data = ReadText(message, kDataKey, "Fail to get data from Message");
    channel.callback_(command, data, channel.user_data_);
  } catch (...) {
    MODULE_ERROR_F("%s", CurrentExceptionText());
  }
}

}  // namespace extension::voice_interaction
