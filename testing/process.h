// A child process of a test.
#ifndef CORVIS_TESTING_PROCESS_H_
#define CORVIS_TESTING_PROCESS_H_

#include <sys/types.h>

#include <cstdio>
#include <string>
#include <utility>
#include <vector>

// The constructor starts the process; the destructor kills and reaps it.
class Process {
 public:
  // Variables with an empty value are removed from the environment.
  using Environment = std::vector<std::pair<std::string, std::string>>;

  explicit Process(const std::vector<std::string>& command, const Environment& environment = {});
  ~Process();
  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;

  // The next line of standard output or standard error; empty at the end of both.
  std::string ReadLine();
  void Signal(int number) const;
  pid_t pid() const { return pid_; }

 private:
  pid_t pid_ = -1;
  FILE* output_ = nullptr;
};

#endif  // CORVIS_TESTING_PROCESS_H_
