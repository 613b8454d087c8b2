// A child process of a test.
#ifndef CORVIS_TESTING_PROCESS_H_
#define CORVIS_TESTING_PROCESS_H_

#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

// The constructor starts the process; the destructor kills and reaps it.
class Process {
 public:
  // Variables with an empty value are removed from the environment.
  using Environment = std::vector<std::pair<std::string, std::string>>;

  explicit Process(const std::vector<std::string>& command, const Environment& environment = {}) {
    int ends[2];
    if (pipe(ends) != 0) std::abort();
    pid_ = fork();
    if (pid_ == 0) {
      for (const int stream : {STDOUT_FILENO, STDERR_FILENO}) dup2(ends[1], stream);
      for (const int end : ends) close(end);
      Run(command, environment);
    }
    close(ends[1]);
    output_ = fdopen(ends[0], "r");
  }
  ~Process() {
    Signal(SIGKILL);
    waitpid(pid_, nullptr, 0);
    fclose(output_);
  }
  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;

  // The next line of standard output or standard error; empty at the end of both.
  std::string ReadLine() {
    std::string line;
    for (int c = fgetc(output_); c != EOF && c != '\n'; c = fgetc(output_)) line += static_cast<char>(c);
    return line;
  }
  void Signal(int number) const { kill(pid_, number); }
  pid_t pid() const { return pid_; }

 private:
  [[noreturn]] static void Run(const std::vector<std::string>& command, const Environment& environment) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    for (const auto& [name, value] : environment) {
      value.empty() ? unsetenv(name.c_str()) : setenv(name.c_str(), value.c_str(), 1);
    }
    std::vector<char*> arguments;
    arguments.reserve(command.size() + 1);
    for (const std::string& word : command) arguments.push_back(const_cast<char*>(word.c_str()));
    arguments.push_back(nullptr);
    execvp(arguments[0], arguments.data());
    _exit(127);
  }

  pid_t pid_ = -1;
  FILE* output_ = nullptr;
};

#endif  // CORVIS_TESTING_PROCESS_H_
