// The private folder of one run, and the environment of the processes that belong to it.
#ifndef CORVIS_RUNTIME_LAUNCHER_RUN_FOLDER_H_
#define CORVIS_RUNTIME_LAUNCHER_RUN_FOLDER_H_

#include <string>
#include <vector>

namespace corvis::tv {

// A folder that only its user may enter, removed with the object.
class RunFolder {
 public:
  RunFolder();
  ~RunFolder();
  RunFolder(const RunFolder&) = delete;
  RunFolder& operator=(const RunFolder&) = delete;

  // Empty when the folder could not be made.
  const std::string& path() const { return path_; }

  // Writes which privileges the application holds, in place of what it held; read by the platform's access
  // control. False when that could not be written, or one of them holds a blank.
  bool WritePolicy(const std::string& app_id, const std::vector<std::string>& privileges) const;

  // Sets what the web process inherits: the application's id, its policy, folders of its own.
  void SetEnvironment(const std::string& app_id) const;

 private:
  std::string path_;
};

}  // namespace corvis::tv

#endif  // CORVIS_RUNTIME_LAUNCHER_RUN_FOLDER_H_
