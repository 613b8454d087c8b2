// Writes down what is said at the prompt, and answered, as a voice script that passes when it is replayed.
#ifndef CORVIS_KIT_CLI_RECORDER_H_
#define CORVIS_KIT_CLI_RECORDER_H_

#include <cstdio>
#include <memory>
#include <string>

#include "app/items.h"
#include "app/conversation.h"

namespace corvis::kit {

class Recorder {
 public:
  // Opens the file, which must not be there yet. Returns a sentence on failure, empty on success.
  std::string Begin(const std::string& file);
  // Closes it. What was recorded is in the file after each statement already.
  void End() { file_.reset(); }
  bool is_recording() const { return file_ != nullptr; }

  void Take(const Turn& turn);
  void Take(const ItemList& items);
  // "restart" or "reload".
  void TakeStatement(const std::string& statement);

 private:
  struct Closer {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };
  void Write(const std::string& lines);

  std::unique_ptr<std::FILE, Closer> file_;
};

}  // namespace corvis::kit

#endif  // CORVIS_KIT_CLI_RECORDER_H_
