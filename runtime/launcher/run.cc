// Runs the application from the first load to the end, with the web engine. In a library of its own, which
// the program loads while the display starts.
#include "launcher/run.h"

#include <glib-unix.h>
#include <gtk/gtk.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <memory>
#include <string>
#include <utility>

#include "launcher/application.h"
#include "launcher/browser.h"
#include "launcher/child_processes.h"
#include "launcher/control_service.h"
#include "launcher/inspector.h"
#include "launcher/missing_files.h"
#include "launcher/storage.h"
#include "nurvo_desktop/glib_ptr.h"

namespace corvis::tv {

namespace {

// Whether a terminal acts on the character instead of showing it: controls, and what reorders a line.
bool IsActive(gunichar code) {
  return g_unichar_iscntrl(code) != FALSE || code == 0x200E || code == 0x200F ||
         (code >= 0x2028 && code <= 0x202E) || (code >= 0x2066 && code <= 0x2069);
}

std::string Shown(const std::string& text) {
  const nurvo::GText valid(g_utf8_make_valid(text.c_str(), -1));
  std::string shown;
  for (const char *at = valid.get(), *next = nullptr; *at != '\0'; at = next) {
    next = g_utf8_next_char(at);
    const gunichar code = g_utf8_get_char(at);
    char escape[16];
    std::snprintf(escape, sizeof(escape), "\\u%04x", code);
    shown += IsActive(code) ? std::string(escape) : std::string(at, next);
  }
  return shown;
}

void PrintConsole(ConsoleKind kind, const std::string& level, const std::string& text,
                  const std::string& source) {
  if (kind == ConsoleKind::kNone || (kind == ConsoleKind::kPage && source != "page")) return;
  std::fprintf(stderr, "[%s] %s: %s\n", source.c_str(), level.c_str(), Shown(text).c_str());
}

// The main loop of a run. A signal ends it, even one that the program has blocked until now.
class MainLoop {
 public:
  MainLoop() : loop_(g_main_loop_new(nullptr, FALSE)) {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) g_unix_signal_add(signal, OnSignal, this);
    // GLib can't watch SIGQUIT.
    std::signal(SIGQUIT, [](int) { kill(getpid(), SIGTERM); });
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
  }
  MainLoop(const MainLoop&) = delete;
  MainLoop& operator=(const MainLoop&) = delete;

  void Run() { g_main_loop_run(loop_.get()); }
  void End() { g_main_loop_quit(loop_.get()); }

 private:
  static gboolean OnSignal(gpointer loop) {
    static_cast<MainLoop*>(loop)->End();
    return G_SOURCE_CONTINUE;
  }

  nurvo::GMainLoopPtr loop_;
};

// A run, from the first load to the end of the main loop.
class Run {
 public:
  // `server` is null for a URL, `inspector` unless it is asked for.
  Run(const Options& options, const Application& application, ApplicationServer* server,
      const RunFolder& folder, ControlService& control, MainLoop& loop, Inspector* inspector)
      : loop_(loop), events_(Events(options.console, control)), browser_(options, application, events_) {
    if (server != nullptr) {
      server->set_on_missing(
          [this](const std::string& path, const std::string& reason) { missing_.Note(path, reason); });
    }
    if (inspector != nullptr) {
      inspector->Watch([this, &control](bool is_attached) {
        browser_.calls().set_is_unlimited(is_attached);
        control.EmitInspected(is_attached);
      });
    }
    control.Serve(
        &browser_, [&folder, id = options.app_id](const auto& uris) { return folder.WritePolicy(id, uris); },
        [this] { End(kExitOk, ""); });
    browser_.Load(application.uri, [this](const std::string& /*uri*/, const CallError& error) {
      if (!error.sentence.empty() && error.sentence != Browser::kAnotherLoad)
        End(kExitLoadFailed, error.sentence);
    });
  }

  int UntilTheEnd() {
    loop_.Run();
    browser_.TakeLeave();
    KillStoppedChildren();
    return sentence_.empty() ? status_ : Fail(status_, sentence_);
  }

 private:
  BrowserEvents Events(ConsoleKind console, ControlService& control) {
    BrowserEvents events;
    events.on_console = [this, console, &control](const auto& level, const auto& text, const auto& source) {
      const std::string line = level == "error" ? missing_.WithReason(text) : text;
      PrintConsole(console, level, line, source);
      control.EmitConsole(level, line, source);
    };
    events.on_loaded = [&control](const std::string& uri) { control.EmitLoaded(uri); };
    events.on_crashed = [&control](unsigned times) {
      std::fprintf(stderr, "corvis-tv: The page's process crashed; the page is reloaded.\n");
      control.EmitCrashed(times);
    };
    events.on_closed = [&control] { control.EmitClosed(); };
    events.on_end = [this](ExitStatus status, const std::string& sentence) { End(status, sentence); };
    return events;
  }

  // Keeps the first reason, because others may be consequences of it.
  void End(ExitStatus status, const std::string& sentence) {
    if (std::exchange(is_ending_, true)) return;
    status_ = status;
    sentence_ = sentence;
    loop_.End();
  }

  MainLoop& loop_;
  bool is_ending_ = false;
  ExitStatus status_ = kExitOk;
  std::string sentence_;
  MissingFiles missing_{[this](const std::string& line) { events_.on_console("error", line, "page"); }};
  BrowserEvents events_;
  Browser browser_;
};

int RunApplication(Options options, const RunFolder& folder, const DisplayWaiter& await_display) {
  MainLoop loop;
  std::string error;
  ExitStatus status = kExitOk;
  Application application = FindApplication(options.page, error);
  if (!error.empty()) return Fail(kExitLoadFailed, error);
  if (options.profile.empty()) options.profile = folder.path() + "/profile";
  error = MakeProfile(options.profile);
  if (!error.empty()) return Fail(kExitNoEnvironment, error);
  const std::unique_ptr<ControlService> control = ControlService::Start(options.app_id, status, error);
  if (!control) return Fail(status, error);
  const std::unique_ptr<ApplicationServer> server = ServeApplication(application, options, error);
  if (!error.empty()) return Fail(kExitNoEnvironment, error);
  error = await_display();
  if (!error.empty()) return Fail(kExitNoEnvironment, error);
  if (!gtk_init_check(nullptr, nullptr)) {
    return Fail(kExitNoEnvironment, "There is no display for a window; use --headless.");
  }
  std::unique_ptr<Inspector> inspector;
  if (options.inspector_port) {
    inspector = Inspector::Start(*options.inspector_port, error);
    if (!inspector) return Fail(kExitNoEnvironment, error);
    std::fprintf(stderr, "Inspector: open %s in a browser.\n", inspector->address().c_str());
  }
  return Run(options, application, server.get(), folder, *control, loop, inspector.get()).UntilTheEnd();
}

}  // namespace

}  // namespace corvis::tv

extern "C" __attribute__((visibility("default"))) int corvis_tv_run(
    const corvis::tv::Options& options, const corvis::tv::RunFolder& folder,
    const corvis::tv::DisplayWaiter& await_display) {
  return corvis::tv::RunApplication(options, folder, await_display);
}
