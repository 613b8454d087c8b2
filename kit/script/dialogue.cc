// Sends messages at once or after a delay, and collects the answer to the latest one.
#include "script/dialogue.h"

#include <glib.h>

#include <algorithm>
#include <functional>
#include <utility>

#include "service/main_loop.h"

namespace corvis::kit {

namespace {

// Changes the conversation's time limit for the lifetime of this object.
class TimeLimit {
 public:
  TimeLimit(Conversation& conversation, std::chrono::milliseconds timeout)
      : conversation_(conversation), before_(conversation.timeout()) {
    conversation_.set_timeout(timeout);
  }
  ~TimeLimit() { conversation_.set_timeout(before_); }
  TimeLimit(const TimeLimit&) = delete;
  TimeLimit& operator=(const TimeLimit&) = delete;

 private:
  Conversation& conversation_;
  std::chrono::milliseconds before_;
};

}  // namespace

// Calls a function on the main loop after a delay; destroying this cancels the call.
class Dialogue::Later {
 public:
  Later(std::chrono::milliseconds delay, std::function<void()> call) : call_(std::move(call)) {
    source_ = g_timeout_add(static_cast<guint>(delay.count()), OnTime, this);
  }
  ~Later() {
    if (is_pending()) g_source_remove(source_);
  }
  Later(const Later&) = delete;
  Later& operator=(const Later&) = delete;

  bool is_pending() const { return source_ != 0; }

 private:
  static gboolean OnTime(gpointer data) {
    auto& self = *static_cast<Later*>(data);
    self.source_ = 0;
    self.call_();
    return G_SOURCE_REMOVE;
  }

  std::function<void()> call_;
  guint source_ = 0;
};

Dialogue::Dialogue(Conversation& conversation) : conversation_(conversation) {}
Dialogue::~Dialogue() = default;

void Dialogue::DropInjected() {
  if (injected_ != 0) conversation_.service().Ignore(injected_);
  injected_ = 0;
}

void Dialogue::Begin() {
  DropInjected();
  turn_ = {};
}

const Turn& Dialogue::Say(const std::string& phrase, std::chrono::milliseconds timeout) {
  const TimeLimit limit(conversation_, timeout);
  DropInjected();
  constexpr auto kInterval = std::chrono::milliseconds(50);
  const auto end = Clock::now() + timeout;
  // An item may appear later, like anything that a script looks for.
  for (turn_ = conversation_.Say(phrase); !turn_.is_sent && !IsInterrupted() && Clock::now() < end;
       turn_ = conversation_.Say(phrase)) {
    RunFor(kInterval);
  }
  return turn_;
}

const Turn& Dialogue::Send(const Command& command, const std::string& said,
                           std::chrono::milliseconds timeout) {
  const TimeLimit limit(conversation_, timeout);
  DropInjected();
  return turn_ = conversation_.Send(command, said);
}

Status Dialogue::Inject(const Entries& entries) {
  Begin();
  const Result<uint64_t> id = conversation_.Inject(entries);
  if (!id) return Fail(id.error());
  injected_ = *id;
  turn_.answer = Fail("The injected message is not a complete command, so no answer is expected.");
  return {};
}

void Dialogue::InjectLater(const ScriptPlace& place, const Entries& entries,
                           std::chrono::milliseconds delay) {
  later_.emplace_back(delay, [this, place, entries] {
    const Result<uint64_t> id = conversation_.Inject(entries);
    if (id && *id != 0) conversation_.service().Ignore(*id);
    if (!id && later_failure_)
      later_failure_ = Fail(Located(place, "The message was not sent. " + id.error().message));
  });
}

void Dialogue::WaitForLater() {
  const auto is_pending = [](const Later& later) { return later.is_pending(); };
  constexpr auto kLongest = std::chrono::hours(1);
  WaitUntil([&] { return std::none_of(later_.begin(), later_.end(), is_pending); }, kLongest);
}

void Dialogue::DropLater() {
  later_.clear();
}

Status Dialogue::LaterFailure() {
  return std::exchange(later_failure_, Status());
}

const Turn& Dialogue::Answered(std::chrono::milliseconds timeout) {
  const uint64_t id = std::exchange(injected_, 0);
  if (id != 0) turn_.answer = conversation_.Await(id, timeout);
  return turn_;
}

std::string Dialogue::Exception() {
  return conversation_.ExceptionOf(turn_);
}

}  // namespace corvis::kit
