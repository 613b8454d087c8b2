// The web engine's inspector, served over HTTP on the loopback interface.
#ifndef CORVIS_RUNTIME_LAUNCHER_INSPECTOR_H_
#define CORVIS_RUNTIME_LAUNCHER_INSPECTOR_H_

#include <glib.h>

#include <functional>
#include <memory>
#include <string>

namespace corvis::tv {

// Lives on the main loop. The engine serves the inspector from its first page on, to the end of the process.
class Inspector {
 public:
  // To be called before the engine is used. Port 0 is any free one. Null and a sentence on failure.
  static std::unique_ptr<Inspector> Start(int port, std::string& error);
  ~Inspector();
  Inspector(const Inspector&) = delete;
  Inspector& operator=(const Inspector&) = delete;

  // What a browser opens.
  std::string address() const;
  // Whether a browser is connected.
  bool is_attached() const { return is_attached_; }
  // Calls `sink` when a browser connects, and when the last one has gone.
  void Watch(std::function<void(bool is_attached)> sink);

 private:
  explicit Inspector(int port) : port_(port) {}
  void Look();

  int port_;
  bool is_attached_ = false;
  std::function<void(bool is_attached)> sink_;
  guint timer_ = 0;
};

}  // namespace corvis::tv

#endif  // CORVIS_RUNTIME_LAUNCHER_INSPECTOR_H_
