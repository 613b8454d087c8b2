// Very many commands, and answers of every size that is special on the way: all come back, in order and
// whole, and neither memory nor descriptors grow.
#include <unistd.h>

#include <algorithm>
#include <cstdio>

#include "robustness/stage.h"
#include "service/bundles.h"
#include "service/wire.h"

namespace robustness {

using namespace corvis::kit;

namespace {

// How many commands are under way at once.
constexpr int kWindow = 16;
constexpr int kWarmUp = 10'000;

std::string NumberOf(int i) {
  return R"({"n":")" + std::to_string(i) + R"("})";
}

// Sends the commands `first` to `last` - 1 and requires their answers, in order.
void Converse(VoiceService& service, int first, int last) {
  for (int begin = first; begin < last; begin += kWindow) {
    std::vector<uint64_t> ids;
    for (int i = begin; i < std::min(begin + kWindow, last); ++i) {
      const Result<uint64_t> id = service.Send(kAppId, Custom({{"n", std::to_string(i)}}));
      Require(id.has_value(), id ? "" : id.error().message);
      ids.push_back(*id);
    }
    for (size_t i = 0; i < ids.size(); ++i) {
      const Result<Answer> answer = service.Await(kAppId, ids[i], kDeadline);
      const std::string expected = NumberOf(begin + static_cast<int>(i));
      Require(AnswerText(answer) == expected,
              "Instead of " + expected + " came " + AnswerText(answer).substr(0, 80));
    }
  }
}

// The text that the page answers with when asked for `bytes`.
std::string TextOfBytes(size_t bytes) {
  std::string text;
  while (text.size() + 10 <= bytes) text += "a\u00e9\u8a9e\U0001F600";
  return text + std::string(bytes - text.size(), 'x');
}

size_t EncodedSize(size_t data_bytes) {
  const std::string data(data_bytes, 'x');
  return EncodeEntries({{wire::kCommandKey, wire::kResult}, {wire::kDataKey, data}, {"sdkVersion", "1.0.8"}})
      .size();
}

// The length of the data whose message has `encoded` bytes.
size_t DataBytesFor(size_t encoded) {
  size_t bytes = encoded - EncodedSize(0);
  while (EncodedSize(bytes) > encoded) --bytes;
  Require(EncodedSize(bytes) == encoded, "No answer encodes to " + std::to_string(encoded) + " bytes.");
  return bytes;
}

void AskForBytes(VoiceService& service, size_t bytes, int least_pieces, int most_pieces) {
  const Result<Answer> answer =
      service.Say(kAppId, Custom({{"size", std::to_string(bytes)}}), std::chrono::seconds(60));
  const std::string which = "The answer of " + std::to_string(bytes) + " bytes ";
  Require(answer.has_value(), which + "did not come: " + AnswerText(answer));
  Require(answer->data == TextOfBytes(bytes), which + "came changed.");
  const int pieces = answer->pieces;
  Require(pieces >= least_pieces && pieces <= most_pieces,
          which + "came in " + std::to_string(pieces) + " pieces.");
}

void AskForEverySize(VoiceService& service) {
  constexpr size_t kLimit = 12'288;
  for (const size_t bytes : {0, 1, 23, 24}) AskForBytes(service, bytes, 1, 1);
  AskForBytes(service, DataBytesFor(kLimit - 1), 1, 1);
  AskForBytes(service, DataBytesFor(kLimit), 1, 1);
  AskForBytes(service, DataBytesFor(kLimit + 1), 2, 2);
  constexpr size_t kMiB = 1 << 20;
  AskForBytes(service, kMiB, kMiB / kLimit, 2 * kMiB / kLimit);
  AskForBytes(service, 16 * kMiB, 16 * kMiB / kLimit, 32 * kMiB / kLimit);
}

}  // namespace

void RunLoad(bool is_short) {
  Service service;
  Tv tv;
  service.WaitForRegistration(1);
  const int count = is_short ? 12'000 : 100'000;
  const pid_t processes[] = {Tv::WebProcess(), tv.process().pid(), getpid()};
  const char* const names[] = {"page", "runtime", "service"};
  Converse(service.voice, 0, kWarmUp);
  Usage before[3];
  for (int i = 0; i < 3; ++i) before[i] = UsageOf(processes[i]);
  const auto start = Clock::now();
  Converse(service.voice, kWarmUp, count);
  const double rate = 1000.0 * (count - kWarmUp) / MillisecondsSince(start);
  std::printf("%d commands answered in order, %.0f/s", count, rate);
  for (int i = 0; i < 3; ++i) {
    const Usage now = UsageOf(processes[i]);
    std::printf("; %s %ld KiB, %+ld since the first %d, %ld descriptors, %+ld", names[i], now.memory,
                now.memory - before[i].memory, kWarmUp, now.descriptors,
                now.descriptors - before[i].descriptors);
    constexpr long kSlack = 16L * 1024;
    Require(now.memory - before[i].memory < kSlack, "The memory grows.");
    // The engine opens a few, once, some seconds after its start, to watch the system's memory.
    constexpr long kFew = 10;
    Require(now.descriptors <= before[i].descriptors + kFew, "Descriptors stay open.");
  }
  Require(tv.Evaluate("state.total") == std::to_string(count), "The page counted other commands.");
  AskForEverySize(service.voice);
  Require(service.notices.empty(), service.notices.empty() ? "" : service.notices.front());
  std::printf("; answers of 0 B to 16 MiB byte for byte\n");
}

}  // namespace robustness
