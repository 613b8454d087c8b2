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
  // Starts an Xvfb of the given size in pixels and points DISPLAY to it. Null and a sentence on failure.
  static std::unique_ptr<HeadlessDisplay> Start(int width, int height, std::string& error);
  ~HeadlessDisplay();
  HeadlessDisplay(const HeadlessDisplay&) = delete;
  HeadlessDisplay& operator=(const HeadlessDisplay&) = delete;

 private:
  explicit HeadlessDisplay(pid_t server) : server_(server) {}
  pid_t server_;
};

}  // namespace corvis::tv

#endif  // CORVIS_RUNTIME_LAUNCHER_HEADLESS_DISPLAY_H_
