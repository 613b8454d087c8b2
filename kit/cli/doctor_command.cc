// corvis doctor: what this machine has of what applications use.
#include <arpa/inet.h>
#include <fmt/format.h>
#include <glib.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <nlohmann/json.hpp>
#include <string_view>

#include "app/json_text.h"
#include "app/page_script.h"
#include "app/stage.h"
#include "cli/application.h"
#include "cli/commands.h"
#include "engine_checks_script.h"
#include "output/output_file.h"

namespace corvis::kit {

namespace {

struct Check {
  std::string name;
  bool holds = false;
  // What to do, or what it means, if it doesn't hold.
  std::string advice;
};

std::string LineOf(const Check& check) {
  return fmt::format("{:<8}  {}{}\n", check.holds ? "ok" : "missing", check.name,
                     check.holds ? "" : ": " + check.advice);
}

bool HasSound() {
  std::error_code ignored;
  const char* folder = std::getenv("XDG_RUNTIME_DIR");
  const std::filesystem::path runtime = folder == nullptr ? "" : folder;
  const bool has_server =
      std::getenv("PULSE_SERVER") != nullptr || std::filesystem::exists(runtime / "pulse/native", ignored);
  return has_server || std::filesystem::exists("/dev/snd/timer", ignored);
}

std::vector<Check> MachineChecks() {
  return {{"display", HasDisplay(), "applications run headless; --window needs a graphical session"},
          {"sound device", HasSound(), "media plays silently"}};
}

// Whether a server on the loopback interface answers with a page.
bool ServesPage(int port) {
  const int connection = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<uint16_t>(port));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  const timeval limit{5, 0};
  setsockopt(connection, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof(limit));
  constexpr std::string_view kRequest = "GET / HTTP/1.0\r\n\r\n";
  char text[64] = "";
  const bool is_answered =
      connect(connection, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0 &&
      send(connection, kRequest.data(), kRequest.size(), MSG_NOSIGNAL) > 0 &&
      recv(connection, text, sizeof(text) - 1, MSG_WAITALL) > 0;
  close(connection);
  return is_answered && std::string_view(text).find(" 200 ") != std::string_view::npos;
}

bool HasBrowser() {
  constexpr const char* kNames[] = {"x-www-browser", "chromium",    "google-chrome",
                                    "firefox",       "firefox-esr", "epiphany"};
  return std::any_of(std::begin(kNames), std::end(kNames), IsProgram);
}

std::vector<Check> InspectorChecks(int port) {
  return {{"inspector", port != 0 && ServesPage(port), "apt install --reinstall libwebkit2gtk-4.1-0"},
          {"browser, which opens the inspector", HasBrowser(), "apt install chromium"}};
}

Result<std::vector<Check>> EngineChecks(RuntimeControl& runtime) {
  const Result<std::string> value = runtime.Evaluate(CallInPage(kEngineChecks, "engineChecks"));
  if (!value) return Fail(value.error());
  const auto rows = ParseJson(*value);
  if (!rows) return Fail(rows.error());
  std::vector<Check> checks;
  for (const auto& row : *rows)
    checks.push_back(
        {row.at(0).get<std::string>(), row.at(1).get<bool>(), "apt install " + row.at(2).get<std::string>()});
  return checks;
}

class DoctorCommand : public Subcommand {
 public:
  void Declare(CLI::App& app) override {
    Describe(
        app,
        "Starts the web engine and prints what this machine has of what applications use: containers and\n"
        "codecs, fonts, the inspector, a display, a sound device; for each thing missing, what to install.");
    DescribeStatuses(app, {{kExitOk, "demo and test-app can run, whatever else is missing"}});
  }

  Result<int> Execute(Supervisor& supervisor, const std::vector<std::string>& /*operands*/) override {
    ApplicationOptions options;
    options.inspector_port = "0";
    const std::string page = options.run.places.examples + "/minimal";
    int port = 0;
    const auto run = StartApplication(supervisor, page, options, PrintLine, [&port](const std::string& line) {
      std::sscanf(line.c_str(), "Inspector: open http://127.0.0.1:%d/", &port);
    });
    if (!run) return Fail(run.error());
    if (const Status loaded = WaitUntilLoaded(**run, options); !loaded) return Fail(loaded.error());
    const auto checks = EngineChecks((*run)->conversation().runtime());
    if (!checks) return Fail(checks.error());
    std::string text = LineOf({"web engine, bus and virtual display", true, ""});
    for (const Check& check : *checks) text += LineOf(check);
    for (const Check& check : InspectorChecks(port)) text += LineOf(check);
    for (const Check& check : MachineChecks()) text += LineOf(check);
    const Status printed = WriteStandardOutput(text);
    return printed ? Result<int>(kExitOk) : Fail(printed.error());
  }
};

}  // namespace

std::unique_ptr<Subcommand> MakeDoctorCommand() {
  return std::make_unique<DoctorCommand>();
}

}  // namespace corvis::kit
