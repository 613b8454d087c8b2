// Watches each folder with a monitor of GIO.
#include "cli/file_watch.h"

#include <gio/gio.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <utility>

#include "cli/paths.h"
#include "nurvo_desktop/glib_ptr.h"

namespace corvis::kit {

namespace {

namespace fs = std::filesystem;

// Longer than the steps of an editor's save are apart, and too short to be noticed.
constexpr auto kCalm = std::chrono::milliseconds(80);
constexpr int kRateLimitMilliseconds = 20;
// A tree of more folders, such as that of a whole disk, is watched in part.
constexpr size_t kMostFolders = 10'000;

bool IsHidden(const fs::path& name) {
  const std::string text = name.string();
  return text == "node_modules" || (text.size() > 1 && text[0] == '.' && text != "..");
}

bool IsInside(const std::string& path, const std::string& folder) {
  return path.size() > folder.size() && path.compare(0, folder.size(), folder) == 0 &&
         (folder.back() == '/' || path[folder.size()] == '/');
}

}  // namespace

class FileWatch::Monitor {
 public:
  Monitor(FileWatch& watch, const std::string& folder, bool is_recursive)
      : watch_(watch), is_recursive_(is_recursive) {
    const nurvo::GObjectPtr<GFile> file(g_file_new_for_path(folder.c_str()));
    monitor_.reset(g_file_monitor_directory(file.get(), G_FILE_MONITOR_WATCH_MOVES, nullptr, nullptr));
    if (!monitor_) return;
    g_file_monitor_set_rate_limit(monitor_.get(), kRateLimitMilliseconds);
    g_signal_connect(monitor_.get(), "changed", G_CALLBACK(OnChanged), this);
  }
  ~Monitor() {
    if (!monitor_) return;
    g_file_monitor_cancel(monitor_.get());
    g_signal_handlers_disconnect_by_data(monitor_.get(), this);
  }
  Monitor(const Monitor&) = delete;
  Monitor& operator=(const Monitor&) = delete;

 private:
  static void OnChanged(GFileMonitor* /*monitor*/, GFile* file, GFile* other, GFileMonitorEvent event,
                        gpointer data) {
    if (event == G_FILE_MONITOR_EVENT_ATTRIBUTE_CHANGED) return;
    for (GFile* one : {file, other}) {
      const nurvo::GText path(one == nullptr ? nullptr : g_file_get_path(one));
      if (path) static_cast<Monitor*>(data)->Note(path.get());
    }
  }

  void Note(const std::string& path) {
    std::error_code ignored;
    if (is_recursive_ && fs::is_directory(path, ignored) && watch_.Counts(path)) {
      watch_.AddFolder(path, true);
    }
    watch_.Note(path);
  }

  FileWatch& watch_;
  const bool is_recursive_;
  nurvo::GObjectPtr<GFileMonitor> monitor_;
};

FileWatch::FileWatch(PathFilter ignores) : ignores_(std::move(ignores)) {}

FileWatch::~FileWatch() {
  if (timer_ != 0) g_source_remove(timer_);
}

void FileWatch::Add(const std::string& path) {
  const std::string absolute = AbsolutePath(path);
  std::error_code ignored;
  if (fs::is_directory(absolute, ignored)) {
    folders_.push_back(absolute);
    return AddFolder(absolute, true);
  }
  files_.insert(absolute);
  AddFolder(fs::path(absolute).parent_path().string(), false);
}

// A folder that is watched for one file may later be watched whole.
void FileWatch::AddFolder(const std::string& folder, bool is_recursive) {
  if (monitors_.size() >= kMostFolders || (monitors_.count(folder) > 0 && !is_recursive)) return;
  monitors_[folder] = std::make_unique<Monitor>(*this, folder, is_recursive);
  if (!is_recursive) return;
  std::error_code error;
  for (auto it = fs::directory_iterator(folder, error); !error && it != fs::directory_iterator();
       it.increment(error)) {
    std::error_code ignored;
    if (it->is_directory(ignored) && !it->is_symlink(ignored) && Counts(it->path().string()))
      AddFolder(it->path().string(), true);
  }
}

bool FileWatch::Counts(const std::string& path) const {
  if (ignores_ && ignores_(path)) return false;
  if (files_.count(path) > 0) return true;
  return std::any_of(folders_.begin(), folders_.end(), [&path](const std::string& folder) {
    if (!IsInside(path, folder)) return false;
    const fs::path inside = fs::path(path).lexically_relative(folder);
    return std::none_of(inside.begin(), inside.end(), IsHidden);
  });
}

void FileWatch::Note(const std::string& path) {
  if (!Counts(path)) return;
  changes_.insert(path);
  is_calm_ = false;
  if (timer_ != 0) g_source_remove(timer_);
  timer_ = g_timeout_add(
      static_cast<guint>(kCalm.count()),
      [](gpointer data) -> gboolean {
        auto* watch = static_cast<FileWatch*>(data);
        watch->timer_ = 0;
        watch->is_calm_ = true;
        if (watch->on_change_) watch->on_change_();
        return G_SOURCE_REMOVE;
      },
      this);
}

std::set<std::string> FileWatch::TakeChanges() {
  return is_calm_ ? std::exchange(changes_, {}) : std::set<std::string>();
}

}  // namespace corvis::kit
