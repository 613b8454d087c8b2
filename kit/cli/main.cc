// The entry point of corvis, voice control for TV web applications on a desktop.
#include <clocale>
#include <cstdio>
#include <exception>

#include "app/supervisor.h"
#include "cli/commands.h"

namespace corvis::kit {

namespace {

Result<int> RunGuarded(Supervisor& supervisor, const std::vector<std::string>& arguments) {
  try {
    return RunTool(supervisor, arguments);
  } catch (const std::exception& error) {
    return Fail(std::string("Unexpected error: ") + error.what());
  }
}

// Prints the error, if any, and returns the exit status.
int Report(const Result<int>& result, const Supervisor& supervisor) {
  if (!result) PrintError(result.error());
  if (supervisor.signal_status() != 0) return supervisor.signal_status();
  return result ? *result : StatusOf(result.error().kind);
}

}  // namespace

}  // namespace corvis::kit

int main(int argc, char** argv) {
  using namespace corvis::kit;
  Supervisor supervisor;
  // LC_NUMERIC stays "C", because numbers use a decimal point in every locale.
  std::setlocale(LC_CTYPE, "");
  std::setvbuf(stdout, nullptr, _IOLBF, BUFSIZ);
  return Report(RunGuarded(supervisor, {argv + 1, argv + argc}), supervisor);
}
