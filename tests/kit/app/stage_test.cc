// A run's processes and folder, with shell commands in the runtime's place: what is reported, and that
// nothing stays.
#include "app/stage.h"

#include <fcntl.h>
#include <glib.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "app/bus_address.h"
#include "app/process_tree.h"
#include "service/main_loop.h"

namespace corvis::kit {
namespace {

namespace fs = std::filesystem;
using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr auto kPatience = seconds(20);

// Holds for a test the folder in which runs make theirs.
class StageTest : public testing::Test {
 protected:
  StageTest() {
    std::string name = fs::temp_directory_path() / "corvis-stage-test.XXXXXX";
    folder_ = mkdtemp(name.data());
    setenv("TMPDIR", folder_.c_str(), 1);
  }
  ~StageTest() override {
    unsetenv("TMPDIR");
    std::error_code ignored;
    fs::permissions(folder_, fs::perms::owner_all, ignored);
    fs::remove_all(folder_, ignored);
  }

  // A stage with this command as the runtime.
  Result<std::unique_ptr<Stage>> Start(const std::string& command) {
    return StartProgram({"/bin/sh", "-c", command});
  }
  Result<std::unique_ptr<Stage>> StartProgram(const std::vector<std::string>& program) {
    return Stage::Start(supervisor_, {program, {}, {}},
                        {[this](const std::string& line) { heard_ += line + "\n"; },
                         [this](int status) { heard_ += "the runtime " + HowItEnded(status) + "\n"; },
                         [this](const std::string& sentence) { heard_ += sentence + "\n"; }});
  }

  bool Hears(const std::string& text) {
    return WaitUntil([&] { return heard_.find(text) != std::string::npos; }, kPatience);
  }

  bool IsEmpty() const { return fs::is_empty(folder_); }

  Supervisor supervisor_;
  fs::path folder_;
  std::string heard_;
};

// Whether nothing is left below this process by then.
bool IsAlone(milliseconds time) {
  const auto end = std::chrono::steady_clock::now() + time;
  while (!Descendants().empty() && std::chrono::steady_clock::now() < end) {
    for (const pid_t process : Descendants()) waitpid(process, nullptr, WNOHANG);
    g_usleep(1000);
  }
  return Descendants().empty();
}

pid_t DescendantNamed(const std::string& name) {
  for (const pid_t process : Descendants()) {
    std::ifstream stream("/proc/" + std::to_string(process) + "/comm");
    std::string comm;
    if (std::getline(stream, comm) && comm == name) return process;
  }
  return 0;
}

// A process that does `work`; returns once that is ready, or has ended.
pid_t Forked(const std::function<int(const std::function<void()>& be_ready)>& work) {
  int ready[2];
  if (pipe(ready) != 0) std::abort();
  const pid_t program = fork();
  if (program == 0) _exit(work([&] { static_cast<void>(write(ready[1], "!", 1)); }));
  close(ready[1]);
  char byte = 0;
  static_cast<void>(read(ready[0], &byte, 1));
  close(ready[0]);
  return program;
}

TEST(BusAddress, TakesAnyBytes) {
  EXPECT_EQ(BusAddress("/a b,;\xff"), "unix:path=%2f%61%20%62%2c%3b%ff");
}

TEST_F(StageTest, ReportsEveryLineAndThenTheEnd) {
  const auto stage = Start("echo first; printf second >&2; printf '\\nthird'; exit 3");
  ASSERT_TRUE(stage) << stage.error().message;
  ASSERT_TRUE(Hears("the runtime ended with status 3\n"));
  // A line without an end is no line.
  EXPECT_EQ(heard_, "first\nsecond\nthe runtime ended with status 3\n");
}

// What is still there when the run ends must end all the same, also when the bus or the keeper was killed.
TEST_F(StageTest, LeavesNothing) {
  const std::string waiting = "echo up; exec sleep 1000";
  const std::pair<std::string, const char*> rows[] = {
      {waiting, ""},
      {waiting, "dbus-daemon"},
      {waiting, "corvis-keeper"},
      {"echo up; kill -STOP $$; exec sleep 1000", ""},
      {"trap '' TERM; echo up; while :; do sleep 1000; done", ""},
      // Orphans in sessions of their own, one of which ignores what it is told.
      {R"(setsid sh -c 'sleep 99 & setsid sleep 99 &' & setsid sh -c "trap '' TERM; sleep 99" & echo up; exit 1)",
       ""},
      // More output than a pipe holds, which nobody reads any more.
      {"echo up; exec yes", ""},
  };
  for (const auto& row : rows) {
    const std::string& command = row.first;
    const char* const killed = row.second;
    heard_.clear();
    auto stage = Start(command);
    ASSERT_TRUE(stage) << stage.error().message;
    ASSERT_TRUE(Hears("up\n")) << command;
    if (*killed != '\0') {
      pid_t process = 0;
      ASSERT_TRUE(WaitUntil([&] { return (process = DescendantNamed(killed)) > 0; }, kPatience)) << killed;
      kill(process, SIGKILL);
    }
    EXPECT_TRUE(Hears(killed)) << killed;
    stage->reset();
    EXPECT_TRUE(Descendants().empty()) << command << killed;
    EXPECT_TRUE(IsEmpty()) << command << killed;
  }
}

TEST_F(StageTest, EndsByItselfWhenItsProgramIsKilled) {
  AdoptOrphans();
  const pid_t program = Forked([&](const std::function<void()>& be_ready) {
    const Supervisor own;
    const auto stage = Start("trap '' TERM; echo up; while :; do sleep 1000; done");
    if (Hears("up\n")) be_ready();
    return pause();
  });
  kill(program, SIGKILL);
  EXPECT_TRUE(IsAlone(seconds(3)));
  EXPECT_TRUE(IsEmpty());
}

TEST_F(StageTest, NamesWhatIsMissing) {
  const auto expect = [](const Result<std::unique_ptr<Stage>>& stage, const char* part) {
    ASSERT_FALSE(stage);
    EXPECT_EQ(stage.error().kind, ErrorKind::kNoEnvironment);
    EXPECT_NE(stage.error().message.find(part), std::string::npos) << stage.error().message;
  };
  expect(StartProgram({"/nowhere/corvis-tv"}), "/nowhere/corvis-tv is missing");
  const fs::path long_name = folder_ / std::string(150, 'x');
  fs::create_directory(long_name);
  for (const fs::path& parent : {fs::path("/nowhere"), long_name}) {
    setenv("TMPDIR", parent.c_str(), 1);
    expect(Start("exec sleep 1000"), "TMPDIR");
  }
  EXPECT_TRUE(IsAlone(kPatience));
  EXPECT_TRUE(fs::is_empty(long_name));
}

// The status of a process that does `work` under a supervisor and gets `signal` (0: none) once it is there.
template <typename Work>
int StatusAfter(int signal, Work work) {
  const pid_t program = Forked([&](const std::function<void()>& be_ready) {
    Supervisor supervisor;
    be_ready();
    return work(supervisor);
  });
  if (signal != 0) kill(program, signal);
  int status = 0;
  WaitForChild(program, kPatience, &status);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST(SupervisorTest, EndsWaitsAndGivesTheStatusOfTheSignal) {
  const auto wait = [](const Supervisor& supervisor) {
    WaitUntil([] { return false; }, kPatience);
    return WhyWaitsEnd()->kind == ErrorKind::kInterrupted ? supervisor.signal_status() : 1;
  };
  for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT})
    EXPECT_EQ(StatusAfter(signal, wait), 128 + signal);
}

TEST(SupervisorTest, EndsAProgramThatIsStuck) {
  const auto begin = std::chrono::steady_clock::now();
  const auto stay = [](Supervisor& /*supervisor*/) -> int {
    for (;;) pause();
  };
  EXPECT_EQ(StatusAfter(SIGTERM, stay), 128 + SIGTERM);
  EXPECT_LT(std::chrono::steady_clock::now() - begin, seconds(5));
  const auto stay_too_long = [&](Supervisor& supervisor) {
    supervisor.EndAfter(milliseconds(1), 8);
    return stay(supervisor);
  };
  EXPECT_EQ(StatusAfter(0, stay_too_long), 8);
}

TEST(SupervisorTest, OpensWhatIsClosedSoThatWritingFails) {
  const int status = StatusAfter(0, [](Supervisor& /*supervisor*/) {
    for (const int standard : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) close(standard);
    const Supervisor again;
    const bool is_right = fcntl(STDERR_FILENO, F_GETFD) >= 0 && write(STDOUT_FILENO, "x", 1) < 0;
    return is_right ? 0 : 1;
  });
  EXPECT_EQ(status, 0);
}

}  // namespace
}  // namespace corvis::kit
