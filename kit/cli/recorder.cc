// Statements of the recording.
#include "cli/recorder.h"

#include <cerrno>
#include <cstring>

#include "language/raw_command.h"
#include "output/text_forms.h"

namespace corvis::kit {

std::string Recorder::Begin(const std::string& file) {
  // "x": what is there already is somebody's work.
  file_.reset(std::fopen(file.c_str(), "wxe"));
  if (file_ == nullptr) {
    return "The file " + file + " can't be begun: " + std::strerror(errno) + ". Choose another name.";
  }
  Write("# Recorded at the prompt of corvis run. Replay it with corvis test-app APPLICATION " + file + "\n");
  return "";
}

void Recorder::Take(const Turn& turn) {
  if (!turn.is_sent) return Write("# not sent: " + turn.said + "\n");
  const std::string statement = IsRawCommand(turn.said) ? "send " + turn.said : "say " + Quoted(turn.said);
  Write("\n" + statement + "\n" + (turn.answer ? "expect " + Quoted(turn.answer->data) : "expect no answer") +
        "\n");
}

void Recorder::Take(const ItemList& items) {
  Write("\nitems count is " + std::to_string(items.items.size()) + "\n");
}

void Recorder::TakeStatement(const std::string& statement) {
  Write("\n" + statement + "\n");
}

void Recorder::Write(const std::string& lines) {
  if (!file_) return;
  std::fputs(lines.c_str(), file_.get());
  std::fflush(file_.get());
}

}  // namespace corvis::kit
