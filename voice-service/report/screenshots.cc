// From the runtime to a file.
#include "report/screenshots.h"

#include <cstdio>
#include <filesystem>
#include <fstream>

namespace corvis::voice {

std::string SaveScreenshot(Conversation& conversation, const std::string& folder, const VoiceScript& script,
                           const Step& step) {
  namespace fs = std::filesystem;
  const ControlResult picture = conversation.runtime().Screenshot();
  std::string problem = picture.error;
  if (picture.is_ok) {
    std::error_code ignored;
    fs::create_directories(folder, ignored);
    const fs::path file = fs::path(folder) / (fs::path(script.file).stem().string() + "-" +
                                              std::to_string(step.place.line) + ".png");
    std::ofstream stream(file, std::ios::binary);
    stream << picture.value;
    stream.close();
    if (stream) return file;
    problem = file.string() + " can't be written.";
  }
  std::fprintf(stderr, "corvis-voice: There is no picture of the failure: %s\n", problem.c_str());
  return "";
}

}  // namespace corvis::voice
