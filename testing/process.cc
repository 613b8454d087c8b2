// Starts and ends child processes.
#include "testing/process.h"

#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <csignal>
#include <cstdlib>

namespace {

[[noreturn]] void Run(const std::vector<std::string>& command, const Process::Environment& environment) {
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

}  // namespace

Process::Process(const std::vector<std::string>& command, const Environment& environment) {
  int ends[2];
  if (pipe(ends) != 0) std::abort();
  pid_ = fork();
  if (pid_ == 0) {
    dup2(ends[1], STDOUT_FILENO);
    dup2(ends[1], STDERR_FILENO);
    close(ends[0]);
    close(ends[1]);
    Run(command, environment);
  }
  close(ends[1]);
  output_ = fdopen(ends[0], "r");
}

Process::~Process() {
  Signal(SIGKILL);
  waitpid(pid_, nullptr, 0);
  fclose(output_);
}

std::string Process::ReadLine() {
  std::string line;
  for (int c = fgetc(output_); c != EOF && c != '\n'; c = fgetc(output_)) line += static_cast<char>(c);
  return line;
}

void Process::Signal(int number) const {
  kill(pid_, number);
}
