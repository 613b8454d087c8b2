// Very many commands, and answers of every size that is special on the way: all come back, in order and
// whole, and neither memory nor descriptors grow.
#include <unistd.h>

#include <algorithm>

#include "robustness/stage.h"
#include "service/bundles.h"
#include "service/wire.h"
#include "testing/split.h"

namespace robustness {

namespace {

// How many commands are under way at once.
constexpr int kWindow = 16;
constexpr int kWarmUp = 10'000;

// Sends the commands `first` to `last` - 1 and requires their answers, in order.
void ConverseInOrder(VoiceService& service, int first, int last) {
  for (int begin = first; begin < last; begin += kWindow) {
    std::vector<uint64_t> ids;
    for (int i = begin; i < std::min(begin + kWindow, last); ++i) {
      const Result<uint64_t> id = service.Send(kAppId, Custom({{"n", std::to_string(i)}}));
      Require(id.has_value(), id ? "" : id.error().message);
      ids.push_back(*id);
    }
    for (size_t i = 0; i < ids.size(); ++i) {
      const std::string answer = AnswerText(service.Await(kAppId, ids[i], kDeadline));
      const std::string expected = R"({"n":")" + std::to_string(begin + static_cast<int>(i)) + R"("})";
      Require(answer == expected, "Instead of " + expected + " came " + answer.substr(0, 80));
    }
  }
}

// The length of the data whose message has `encoded` bytes.
size_t DataBytesFor(size_t encoded) {
  const auto encoded_size = [](size_t bytes) {
    const std::string data(bytes, 'x');
    const Entries message = {
        {wire::kCommandKey, wire::kResult}, {wire::kDataKey, data}, {"sdkVersion", "1.0.8"}};
    return EncodeEntries(message).size();
  };
  size_t bytes = encoded - encoded_size(0);
  while (encoded_size(bytes) > encoded) --bytes;
  Require(encoded_size(bytes) == encoded, "No answer encodes to " + std::to_string(encoded) + " bytes.");
  return bytes;
}

void AskForBytes(VoiceService& service, size_t bytes, size_t least_pieces, size_t most_pieces) {
  const Command command = Custom({{"size", std::to_string(bytes)}});
  const Result<Answer> answer = service.Say(kAppId, command, std::chrono::seconds(60));
  const std::string which = "The answer of " + std::to_string(bytes) + " bytes ";
  Require(answer.has_value(), which + "did not come: " + AnswerText(answer));
  // The page's text of so many bytes.
  Require(answer->data == Repeated("a\u00e9\u8a9e\U0001F600", bytes / 10) + std::string(bytes % 10, 'x'),
          which + "came changed.");
  const auto pieces = static_cast<size_t>(answer->pieces);
  Require(pieces >= least_pieces && pieces <= most_pieces,
          which + "came in " + std::to_string(pieces) + " pieces.");
}

void AskForEverySize(VoiceService& service) {
  constexpr size_t kLimit = 12'288;
  constexpr size_t kMiB = 1 << 20;
  for (const size_t bytes :
       {size_t{0}, size_t{1}, size_t{23}, size_t{24}, DataBytesFor(kLimit - 1), DataBytesFor(kLimit)})
    AskForBytes(service, bytes, 1, 1);
  AskForBytes(service, DataBytesFor(kLimit + 1), 2, 2);
  for (const size_t bytes : {kMiB, 16 * kMiB})
    AskForBytes(service, bytes, bytes / kLimit, 2 * bytes / kLimit);
}

}  // namespace

void RunLoad(bool is_short) {
  Service service;
  Tv tv;
  service.WaitForRegistration(1);
  const int count = is_short ? 12'000 : 100'000;
  ConverseInOrder(service.voice, 0, kWarmUp);
  const struct {
    const char* name;
    pid_t process;
    Usage before{process};
  } kProcesses[] = {{"page", Tv::WebProcess()}, {"runtime", tv.process().pid()}, {"service", getpid()}};
  const auto start = Clock::now();
  ConverseInOrder(service.voice, kWarmUp, count);
  const double rate = 1000.0 * (count - kWarmUp) / MillisecondsSince(start);
  std::printf("%d commands answered in order, %.0f/s", count, rate);
  for (const auto& [name, process, before] : kProcesses) {
    const Usage now(process);
    const long growth = now.memory - before.memory;
    std::printf("; %s %ld KiB, %+ld since the first %d, %ld descriptors, %+ld", name, now.memory, growth,
                kWarmUp, now.descriptors, now.descriptors - before.descriptors);
    Require(growth < 16L * 1024, "The memory grows.");
    now.RequireFewMoreDescriptors(before);
  }
  Require(tv.Evaluate("state.total") == std::to_string(count), "The page counted other commands.");
  AskForEverySize(service.voice);
  Require(service.notices.empty(), service.notices.empty() ? "" : service.notices.front());
  std::printf("; answers of 0 B to 16 MiB byte for byte\n");
}

}  // namespace robustness
