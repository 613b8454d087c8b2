// A virtual X server, for running without a display.
#ifndef CORVIS_RUNTIME_LAUNCHER_HEADLESS_DISPLAY_H_
#define CORVIS_RUNTIME_LAUNCHER_HEADLESS_DISPLAY_H_

#include <sys/types.h>

#include <string>

namespace corvis::tv {

// An Xvfb. The destructor ends it; it also ends if this process is killed.
class HeadlessDisplay {
 public:
  // Starts a server with the given size in pixels, without waiting for it. It accepts clients that can read
  // the authority file in `folder`, which only this user can access.
  HeadlessDisplay(int width, int height, const std::string& folder);
  ~HeadlessDisplay();
  HeadlessDisplay(const HeadlessDisplay&) = delete;
  HeadlessDisplay& operator=(const HeadlessDisplay&) = delete;

  // Waits until the server is ready, and sets DISPLAY. Returns an error message, empty on success.
  std::string Await();

 private:
  void StartServer();
  // Whether the server has become ready in time.
  bool IsServerReady();
  void EndServer();

  std::string screen_;
  std::string authority_;
  std::string number_;
  pid_t server_ = -1;
  // Where the server reports that it is ready; -1 if absent.
  int ready_ = -1;
};

}  // namespace corvis::tv

#endif  // CORVIS_RUNTIME_LAUNCHER_HEADLESS_DISPLAY_H_
