// The private folder of one run, and the environment of its processes.
#ifndef CORVIS_RUNTIME_LAUNCHER_RUN_FOLDER_H_
#define CORVIS_RUNTIME_LAUNCHER_RUN_FOLDER_H_

#include <string>
#include <vector>

namespace corvis::tv {

// A folder that only its user can access. The destructor removes it.
class RunFolder {
 public:
  RunFolder();
  ~RunFolder();
  RunFolder(const RunFolder&) = delete;
  RunFolder& operator=(const RunFolder&) = delete;

  // Empty if the folder could not be created.
  const std::string& path() const { return path_; }

  // Replaces the privileges of the application in the policy file, which the platform's access control reads.
  // Returns false if the file can't be written or a privilege contains white space.
  bool WritePolicy(const std::string& app_id, const std::vector<std::string>& privileges) const;

  // Sets the variables that the web process inherits: the application id, the policy file, and private
  // folders.
  void SetEnvironment(const std::string& app_id) const;

 private:
  std::string path_;
};

}  // namespace corvis::tv

#endif  // CORVIS_RUNTIME_LAUNCHER_RUN_FOLDER_H_
