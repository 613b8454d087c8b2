// The page's end of an extension: its empty hooks, and sending messages and replies.
#include "binding/binding.h"
#include "nurvo/extension.h"

namespace common {

Instance::Instance() = default;

Instance::~Instance() = default;

void Instance::OnAttached() {}

void Instance::HandleMessage(const char* /*message*/) {}

void Instance::HandleSyncMessage(const char* /*message*/) {}

void Instance::HandleBinaryMessage(const char* /*message*/, size_t /*size*/) {}

void Instance::HandleSyncBinaryMessage(const char* /*message*/, size_t /*size*/) {}

void Instance::SetSuspended(bool suspended) {
  suspended_ = suspended;
}

// NOLINTNEXTLINE(readability-make-member-function-const): the signature is the platform's.
void Instance::PostMessage(const char* message) {
  const NurvoMessagingInterface* const messaging = nurvo::Binding::Get().MessagingOf(handle_);
  if (messaging != nullptr && message != nullptr) messaging->post_message(handle_, message);
}

// NOLINTNEXTLINE(readability-make-member-function-const): the signature is the platform's.
void Instance::SendSyncReply(const char* reply) {
  const NurvoMessagingInterface* const messaging = nurvo::Binding::Get().MessagingOf(handle_);
  if (messaging != nullptr && reply != nullptr) messaging->set_sync_reply(handle_, reply);
}

}  // namespace common
