// The voice service alone, on the bus of the environment: takes what is said to the application from standard
// input, as the prompt does.
#include <cstdio>
#include <memory>

#include "cli/line_source.h"
#include "cli/prompt.h"
#include "service/voice_service.h"

int main(int argc, char** argv) {
  using namespace corvis::kit;
  if (argc != 2) return 2;
  std::setvbuf(stdout, nullptr, _IOLBF, BUFSIZ);
  const std::unique_ptr<LineSource> lines = OpenStandardInput();
  VoiceService service([&lines](const std::string& sentence) { lines->Show(sentence); });
  const Status started = service.Start();
  Conversation conversation(service, argv[1], std::chrono::seconds(5));
  const Status arrived = started ? conversation.WaitForApp(std::chrono::seconds(20)) : started;
  if (!arrived) lines->Show(arrived.error().message);
  Prompt(conversation, *lines).Run();
  return 0;
}
