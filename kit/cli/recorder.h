// Records what is said, pressed and looked at at the prompt as a voice script that passes on replay.
#ifndef CORVIS_KIT_CLI_RECORDER_H_
#define CORVIS_KIT_CLI_RECORDER_H_

#include <optional>
#include <string>

#include "app/conversation.h"
#include "app/items.h"
#include "base/result.h"
#include "output/output_file.h"

namespace corvis::kit {

// Ignores its input while no recording is in progress. A failed write is reported once and ends the
// recording.
class Recorder {
 public:
  // Starts recording to a new file. Fails if the file exists.
  Status Begin(const std::string& file);
  // Closes the file. Every statement has been flushed before.
  Status End();
  bool is_recording() const { return output_.has_value(); }

  Status Take(const Turn& turn);
  Status Take(const ItemList& items);
  // Records a statement of voice scripts.
  Status TakeStatement(const std::string& statement);

 private:
  Status Write(const std::string& lines);

  std::optional<OutputFile> output_;
};

}  // namespace corvis::kit

#endif  // CORVIS_KIT_CLI_RECORDER_H_
