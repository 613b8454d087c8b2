// A virtual X server, for running without a display.
#ifndef CORVIS_RUNTIME_LAUNCHER_HEADLESS_DISPLAY_H_
#define CORVIS_RUNTIME_LAUNCHER_HEADLESS_DISPLAY_H_

#include <sys/types.h>

#include <memory>
#include <string>

namespace corvis::tv {

// The destructor ends the server; it also ends if this process is killed.
class HeadlessDisplay {
 public:
  // Starts an Xvfb with the given size in pixels and sets DISPLAY. It accepts clients that can read the
  // authority file in `folder`, which only this user can access. Returns null and an error message on
  // failure.
  static std::unique_ptr<HeadlessDisplay> Start(int width, int height, const std::string& folder,
                                                std::string& error);
  ~HeadlessDisplay();
  HeadlessDisplay(const HeadlessDisplay&) = delete;
  HeadlessDisplay& operator=(const HeadlessDisplay&) = delete;

 private:
  HeadlessDisplay(int width, int height, const std::string& authority);

  std::string number_;
  pid_t server_ = -1;
  bool is_ready_ = false;
};

}  // namespace corvis::tv

#endif  // CORVIS_RUNTIME_LAUNCHER_HEADLESS_DISPLAY_H_
