// Writes down what is said at the prompt, and answered, as a voice script that passes when it is replayed.
#ifndef CORVIS_KIT_CLI_RECORDER_H_
#define CORVIS_KIT_CLI_RECORDER_H_

#include <optional>
#include <string>

#include "app/conversation.h"
#include "app/items.h"
#include "base/result.h"
#include "output/output_file.h"

namespace corvis::kit {

// While nothing is recorded, it takes what it gets and drops it. After a write that failed, which is reported
// once, nothing is recorded any more.
class Recorder {
 public:
  // Begins the file, which must not be there yet.
  Status Begin(const std::string& file);
  // What was recorded is in the file after each statement already.
  Status End();
  bool is_recording() const { return output_.has_value(); }

  Status Take(const Turn& turn);
  Status Take(const ItemList& items);
  // "restart" or "reload".
  Status TakeStatement(const std::string& statement);

 private:
  Status Write(const std::string& lines);

  std::optional<OutputFile> output_;
};

}  // namespace corvis::kit

#endif  // CORVIS_KIT_CLI_RECORDER_H_
