// From the runtime to a file.
#include "script/screenshots.h"

#include <cstdio>
#include <filesystem>

#include "output/output_file.h"

namespace corvis::kit {

namespace {

// With the items' numbers where the page still tells them, plain otherwise.
std::string Picture(Conversation& conversation, std::string& problem) {
  const auto items = conversation.AskItems(problem);
  std::string numbered = items ? conversation.PictureOf(*items, problem) : "";
  if (!numbered.empty()) return numbered;
  const ControlResult plain = conversation.runtime().Screenshot();
  problem = plain.error;
  return plain.value;
}

}  // namespace

std::string SaveScreenshot(Conversation& conversation, const std::string& folder, const VoiceScript& script,
                           const Step& step) {
  namespace fs = std::filesystem;
  std::string problem;
  const std::string picture = Picture(conversation, problem);
  const std::string name =
      fs::path(script.file).stem().string() + "-" + std::to_string(step.place.line) + ".png";
  std::string file = fs::path(folder) / name;
  if (!picture.empty()) {
    if (const Status written = WriteOutputFile(file, picture); !written) problem = written.error().message;
  }
  if (problem.empty()) return file;
  std::fprintf(stderr, "corvis-voice: There is no picture of the failure: %s\n", problem.c_str());
  return "";
}

}  // namespace corvis::kit
