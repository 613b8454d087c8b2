// Finds scripts, reads them and chooses among their tests.
#include "cli/script_selection.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <optional>
#include <sstream>
#include <string_view>
#include <utility>

#include "cli/application.h"
#include "cli/command_line.h"
#include "cli/exit_status.h"
#include "output/text_forms.h"
#include "script/matcher.h"
#include "script/script_reader.h"

namespace corvis::kit {

namespace {

namespace fs = std::filesystem;

constexpr const char* kEnding = ".voice";

// A script that an operand names; `lines` are those of the tests to choose, empty for all.
struct NamedScript {
  std::string file;
  std::vector<int> lines;
};

bool Exists(const std::string& file) {
  std::error_code ignored;
  return fs::exists(file, ignored);
}

std::optional<int> PositiveNumber(std::string_view text) {
  int number = 0;
  const char* end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, number);
  return error == std::errc() && rest == end && number > 0 ? std::optional(number) : std::nullopt;
}

// Hidden folders and those of package managers have no scripts of the application.
bool IsSkipped(const fs::path& folder) {
  return folder.filename() == "node_modules" || folder.filename().string().front() == '.';
}

Result<std::vector<NamedScript>> ScriptsIn(const std::string& folder) {
  std::vector<std::string> files;
  std::error_code error;
  fs::recursive_directory_iterator entry(folder, fs::directory_options::skip_permission_denied, error);
  for (; !error && entry != fs::recursive_directory_iterator(); entry.increment(error)) {
    std::error_code ignored;
    const bool is_folder = entry->is_directory(ignored);
    if (is_folder && IsSkipped(entry->path())) entry.disable_recursion_pending();
    if (!is_folder && entry->path().extension() == kEnding)
      files.push_back(entry->path().lexically_normal().string());
  }
  if (error) return Fail("The folder " + folder + " can't be read.", ErrorKind::kUsage);
  if (files.empty())
    return Fail("The folder " + folder + " has no voice script; expected files named *.voice.",
                ErrorKind::kUsage);
  std::sort(files.begin(), files.end());
  std::vector<NamedScript> scripts;
  scripts.reserve(files.size());
  for (std::string& file : files) scripts.push_back({std::move(file), {}});
  return scripts;
}

// FILE:LINE, unless a file has this name.
std::optional<NamedScript> ScriptAtLine(const std::string& operand) {
  const size_t colon = operand.rfind(':');
  if (colon == std::string::npos || Exists(operand)) return {};
  const auto line = PositiveNumber(std::string_view(operand).substr(colon + 1));
  if (!line || !Exists(operand.substr(0, colon))) return {};
  return NamedScript{operand.substr(0, colon), {*line}};
}

Result<std::vector<NamedScript>> FindScripts(const std::vector<std::string>& operands) {
  std::vector<NamedScript> scripts;
  for (const std::string& operand : operands) {
    std::error_code ignored;
    if (fs::is_directory(operand, ignored)) {
      auto found = ScriptsIn(operand);
      if (!found) return found;
      std::move(found->begin(), found->end(), std::back_inserter(scripts));
    } else if (const auto script = ScriptAtLine(operand)) {
      // Several lines of a script are one run of it.
      const auto same = std::find_if(scripts.begin(), scripts.end(), [&script](const NamedScript& other) {
        return other.file == script->file && !other.lines.empty();
      });
      if (same == scripts.end()) {
        scripts.push_back(*script);
      } else {
        same->lines.push_back(script->lines.front());
      }
    } else {
      scripts.push_back({operand, {}});
    }
  }
  return scripts;
}

// Removes the byte order mark that some editors add.
std::string WithoutByteOrderMark(const std::string& text) {
  constexpr std::string_view kMark = "\xef\xbb\xbf";
  return text.compare(0, kMark.size(), kMark) == 0 ? text.substr(kMark.size()) : text;
}

// Reads a script. Returns false, after printing the errors, if it can't be run.
bool ReadScript(const std::string& file, const SpokenLanguage& language, SelectedScript& selected) {
  std::ifstream opened;
  // Read through std::cin: /dev/stdin can't be opened if it is a socket.
  const bool is_standard_input = file == "/dev/stdin";
  if (!is_standard_input) opened.open(file, std::ios::binary);
  std::ostringstream text;
  if (!opened || !(text << (is_standard_input ? std::cin : opened).rdbuf())) {
    PrintError({"The script " + file + " can't be read or is empty."});
    return false;
  }
  selected.text = WithoutByteOrderMark(text.str());
  VoiceScript& script = selected.script;
  script = ParseVoiceScript(selected.text, file, language);
  for (const ScriptError& error : script.errors) PrintLine(Located(error.place, error.message));
  if (script.errors.empty() && script.tests.empty())
    PrintError({"The script " + file + " has no statement; expected at least one."});
  return script.errors.empty() && !script.tests.empty();
}

// The place of the test that a line belongs to.
Result<int> LineOfTestAt(int line, const SelectedScript& selected) {
  const auto& tests = selected.script.tests;
  const auto lines = 1 + std::count(selected.text.begin(), selected.text.end(), '\n');
  const auto after = std::find_if(tests.begin(), tests.end(),
                                  [line](const ScriptTest& test) { return test.place.line > line; });
  if (after != tests.begin() && line <= lines) return std::prev(after)->place.line;
  return Fail(
      selected.script.file + " has no test at line " + std::to_string(line) + "; --list lists its tests.",
      ErrorKind::kUsage);
}

// The steps before the first test, which a name can't choose unless the script has nothing else.
bool IsOpening(const VoiceScript& script, const ScriptTest& test) {
  return !test.name && script.tests.size() > 1;
}

// Keeps the tests that `is_chosen` holds for, and with any of them the opening.
void Keep(VoiceScript& script, const TestFilter& is_chosen) {
  std::vector<bool> chosen;
  for (const ScriptTest& test : script.tests) chosen.push_back(is_chosen(script, test));
  const bool is_any = std::find(chosen.begin(), chosen.end(), true) != chosen.end();
  if (is_any && !script.tests.front().name) chosen.front() = true;
  std::vector<ScriptTest> kept;
  for (size_t i = 0; i < chosen.size(); ++i) {
    if (chosen[i]) kept.push_back(std::move(script.tests[i]));
  }
  script.tests = std::move(kept);
}

Status KeepLines(SelectedScript& selected, const std::vector<int>& lines) {
  if (lines.empty()) return {};
  std::vector<int> places;
  for (const int line : lines) {
    const Result<int> place = LineOfTestAt(line, selected);
    if (!place) return Fail(place.error());
    places.push_back(*place);
  }
  Keep(selected.script, [&places](const VoiceScript& /*script*/, const ScriptTest& test) {
    return std::find(places.begin(), places.end(), test.place.line) != places.end();
  });
  return {};
}

Result<TestFilter> NameFilter(const std::string& pattern) {
  if (pattern.empty()) return TestFilter([](const VoiceScript&, const ScriptTest&) { return true; });
  auto regex = MatcherOfRegex(pattern);
  if (!regex) return Fail("--grep: " + regex.error().message, ErrorKind::kUsage);
  return TestFilter([regex = *regex](const VoiceScript& script, const ScriptTest& test) {
    if (IsOpening(script, test)) return false;
    const Result<bool> is_match = regex.matches(test.name ? *test.name : script.file);
    return is_match && *is_match;
  });
}

Status CheckAnyChosen(const std::vector<SelectedScript>& scripts, const SelectionOptions& options) {
  if (!scripts.empty()) return {};
  return Fail("No test has a name that matches " + Quoted(options.name_pattern) +
                  "; --list without --grep lists all.",
              ErrorKind::kUsage);
}

// Every script of the shard, as often as it is to be run.
std::vector<SelectedScript> PartOf(std::vector<SelectedScript> scripts, const SelectionOptions& options) {
  std::vector<SelectedScript> part;
  for (auto i = static_cast<size_t>(options.shard - 1); i < scripts.size();
       i += static_cast<size_t>(options.shards))
    part.push_back(std::move(scripts[i]));
  const size_t count = part.size();
  for (size_t i = count; i < count * static_cast<size_t>(options.repetitions); ++i)
    part.push_back(part[i - count]);
  return part;
}

bool ReadShard(const std::string& text, SelectionOptions& options) {
  const size_t slash = text.find('/');
  if (slash == std::string::npos) return false;
  const auto shard = PositiveNumber(std::string_view(text).substr(0, slash));
  const auto shards = PositiveNumber(std::string_view(text).substr(slash + 1));
  if (!shard || !shards || *shard > *shards) return false;
  options.shard = *shard;
  options.shards = *shards;
  return true;
}

}  // namespace

void AddSelectionOptions(CLI::App& app, SelectionOptions& options) {
  constexpr long kMostRepetitions = 10'000;
  BeginGroup(app, "Choosing");
  AddText(app, "--grep", "REGEX", "run the tests whose name matches the regular expression",
          options.name_pattern);
  AddNumber(app, "--repeat", "N", "run the scripts N times", kMostRepetitions, options.repetitions);
  AddValue(
      app, "--shard", "I/N", "run the I-th of N parts of the scripts", "",
      [](const std::string& text) {
        SelectionOptions ignored;
        return ReadShard(text, ignored) ? "" : "a part and the number of parts, such as 1/3";
      },
      [&options](const std::string& text) { ReadShard(text, options); });
}

Result<std::vector<SelectedScript>> SelectScripts(const std::vector<std::string>& operands,
                                                  const SpokenLanguage& language,
                                                  const SelectionOptions& options, const TestFilter& filter) {
  const auto by_name = NameFilter(options.name_pattern);
  if (!by_name) return Fail(by_name.error());
  const auto named = FindScripts(operands);
  if (!named) return Fail(named.error());
  std::vector<SelectedScript> scripts(named->size());
  bool are_fine = true;
  for (size_t i = 0; i < scripts.size(); ++i)
    are_fine = ReadScript((*named)[i].file, language, scripts[i]) && are_fine;
  if (!are_fine) return Fail("", ErrorKind::kUsage);
  for (size_t i = 0; i < scripts.size(); ++i) {
    if (const Status kept = KeepLines(scripts[i], (*named)[i].lines); !kept) return Fail(kept.error());
    Keep(scripts[i].script, *by_name);
  }
  const auto is_empty = [](const SelectedScript& selected) { return selected.script.tests.empty(); };
  scripts.erase(std::remove_if(scripts.begin(), scripts.end(), is_empty), scripts.end());
  if (const Status any = CheckAnyChosen(scripts, options); !any) return Fail(any.error());
  for (SelectedScript& selected : scripts) Keep(selected.script, filter);
  scripts.erase(std::remove_if(scripts.begin(), scripts.end(), is_empty), scripts.end());
  return PartOf(std::move(scripts), options);
}

std::string ListOf(const std::vector<SelectedScript>& scripts) {
  std::string list;
  for (const SelectedScript& selected : scripts) {
    for (const ScriptTest& test : selected.script.tests) {
      list += ForTerminal(test.place.file) + ":" + std::to_string(test.place.line) +
              (test.name ? "  " + ForTerminal(*test.name) : "") + "\n";
    }
  }
  return list;
}

}  // namespace corvis::kit
