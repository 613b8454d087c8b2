// An X server without a screen, for running where there is no display.
#ifndef CORVIS_RUNTIME_LAUNCHER_HEADLESS_DISPLAY_H_
#define CORVIS_RUNTIME_LAUNCHER_HEADLESS_DISPLAY_H_

#include <sys/types.h>

#include <memory>
#include <string>

namespace corvis::tv {

// Ends its server when it goes; the server also ends when this process is killed.
class HeadlessDisplay {
 public:
  // Starts an Xvfb of the given size in pixels and points DISPLAY to it. It takes clients that can read the
  // authority file in `folder`, which only its user may enter. Null and a sentence on failure.
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
