// Waits for changes and keys between runs of scripts.
#include "cli/watch_run.h"

#include <chrono>
#include <filesystem>
#include <optional>
#include <set>
#include <utility>

#include "cli/exit_status.h"
#include "cli/file_watch.h"
#include "cli/last_failed.h"
#include "cli/paths.h"
#include "cli/running_application.h"
#include "cli/watch_keys.h"
#include "output/output_file.h"
#include "service/main_loop.h"

namespace corvis::kit {

namespace {

namespace fs = std::filesystem;

constexpr const char* kKeys =
    "Waiting for changes. Keys: a = all, f = failed, Enter = the same again, q = quit";

bool IsScript(const std::string& path) {
  return fs::path(path).extension() == ".voice";
}

// "a.voice:3" names a test of a file.
std::string FileOf(const std::string& operand) {
  std::error_code ignored;
  const size_t colon = operand.rfind(':');
  return fs::exists(operand, ignored) || colon == std::string::npos ? operand : operand.substr(0, colon);
}

class WatchRun {
 public:
  WatchRun(Supervisor& supervisor, const std::string& application, const std::vector<std::string>& operands,
           const ScriptRunOptions& options)
      : supervisor_(supervisor),
        operands_(operands),
        options_(options),
        application_(supervisor, application, options.application),
        last_failed_(application),
        watch_([this](const std::string& path) { return IsOutput(path); }) {
    for (const auto& [format, file] : options.report_files) {
      if (!file.empty()) reports_.insert(AbsolutePath(file));
    }
    if (const std::string folder = ScreenshotFolder(options); !folder.empty())
      pictures_ = AbsolutePath(folder);
    std::error_code ignored;
    // The page of a URL is its server's.
    if (fs::exists(application, ignored))
      watch_.Add(fs::is_directory(application, ignored)
                     ? application
                     : fs::path(AbsolutePath(application)).parent_path().string());
    for (const std::string& operand : operands) watch_.Add(FileOf(operand));
    for (const std::string& file : options.application.language.phrase_files) watch_.Add(file);
  }

  Result<int> Run() {
    WatchKeys keys;
    bool is_first = true;
    for (std::optional<ScriptChoice> choice = ScriptChoice(); choice; choice = Next(keys, *choice)) {
      const Result<int> status =
          RunChosen(supervisor_, application_, last_failed_, operands_, options_, *choice);
      const bool was_first = std::exchange(is_first, false);
      const Status resumed = ResumeWaits();
      if (!resumed) return Fail(resumed.error());
      if (!status && was_first && IsFinal(status.error())) return status;
      if (!status) PrintError(status.error());
      status_ = status ? *status : StatusOf(status.error().kind);
      if (const Status printed = ListKeys(); !printed) return Fail(printed.error());
    }
    const Error* reason = WhyWaitsEnd();
    return reason == nullptr ? Result<int>(status_) : Fail(*reason);
  }

 private:
  // The kit's own files.
  bool IsOutput(const std::string& path) const {
    const fs::path file(path);
    return reports_.count(path) > 0 || path == pictures_ ||
           (!pictures_.empty() && file.parent_path() == pictures_ && file.extension() == ".png");
  }

  // Programs that read JSON get nothing else.
  Status ListKeys() const {
    if (options_.report != "json") return WriteStandardOutput(std::string(kKeys) + "\n");
    PrintLine(kKeys);
    return {};
  }

  // Whether a first run that fails so can't be helped by saving a file. A script's mistakes, which have been
  // printed, can.
  static bool IsFinal(const Error& error) {
    return !error.message.empty() && error.kind != ErrorKind::kClosed;
  }

  // Waits for a change or a key, and returns what to run; nothing at the end.
  std::optional<ScriptChoice> Next(WatchKeys& keys, const ScriptChoice& last) {
    constexpr auto kForGood = std::chrono::hours(24 * 20);
    std::optional<ScriptChoice> next;
    bool is_over = false;
    const auto look = [&] {
      if (const auto key = keys.Take()) is_over = *key == 'q' || TakeKey(*key, last, next);
      if (const auto changes = watch_.TakeChanges(); !changes.empty()) next = Affected(changes);
      return is_over || next.has_value();
    };
    WaitUntil(look, kForGood);
    return is_over || IsInterrupted() ? std::nullopt : next;
  }

  // Sets what the key asks for. Returns false, because no such key ends the run.
  static bool TakeKey(char key, const ScriptChoice& last, std::optional<ScriptChoice>& next) {
    if (key == 'a') next = ScriptChoice();
    if (key == 'f') next = ScriptChoice{{}, true, true};
    if (key == '\n') next = last;
    return false;
  }

  static ScriptChoice Affected(const std::set<std::string>& changes) {
    ScriptChoice choice;
    choice.is_failed_first = true;
    for (const std::string& path : changes) {
      if (!IsScript(path)) return choice;
    }
    choice.includes = [changes](const std::string& file) { return changes.count(AbsolutePath(file)) > 0; };
    return choice;
  }

  Supervisor& supervisor_;
  const std::vector<std::string>& operands_;
  const ScriptRunOptions& options_;
  RunningApplication application_;
  LastFailed last_failed_;
  std::set<std::string> reports_;
  std::string pictures_;
  FileWatch watch_;
  int status_ = kExitOk;
};

}  // namespace

Result<int> WatchScripts(Supervisor& supervisor, const std::string& application,
                         const std::vector<std::string>& operands, const ScriptRunOptions& options) {
  return WatchRun(supervisor, application, operands, options).Run();
}

}  // namespace corvis::kit
