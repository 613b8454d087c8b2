// Turns what happens at the prompt into statements of a voice script.
#include "cli/recorder.h"

#include "language/raw_command.h"
#include "output/text_forms.h"

namespace corvis::kit {

Status Recorder::Begin(const std::string& file) {
  // An existing file may be somebody's work, so it is not overwritten.
  output_.emplace(file, OutputFile::Existing::kRefused);
  return Write("# Recorded at the prompt of corvis run. Replay it with corvis test-app APPLICATION " + file +
               "\n");
}

Status Recorder::End() {
  if (!output_) return {};
  Status status = output_->Finish();
  output_.reset();
  return status;
}

Status Recorder::Take(const Turn& turn) {
  if (!turn.is_sent) return Write("# not sent: " + turn.said + "\n");
  const std::string statement = IsRawCommand(turn.said) ? "send " + turn.said : "say " + Quoted(turn.said);
  return Write("\n" + statement + "\n" +
               (turn.answer ? "expect " + Quoted(turn.answer->data) : "expect no answer") + "\n");
}

Status Recorder::Take(const ItemList& items) {
  return Write("\nitems count is " + std::to_string(items.items.size()) + "\n");
}

Status Recorder::TakeStatement(const std::string& statement) {
  return Write("\n" + statement + "\n");
}

Status Recorder::Write(const std::string& lines) {
  if (!output_) return {};
  output_->Write(lines);
  return output_->status() ? Status() : End();
}

}  // namespace corvis::kit
