// Splits a script into lines and has the statement of each line parse the rest of it.
#include "script/script_reader.h"

#include <utility>

#include "language/suggestions.h"
#include "script/line_reader.h"
#include "script/statements.h"

namespace corvis::kit {

namespace {

class ScriptReader {
 public:
  ScriptReader(VoiceScript& script, SpokenLanguage language)
      : script_(script), language_(std::move(language)) {}

  void ReadLine(std::string_view text, int number) {
    LineReader line(text, &language_);
    if (line.is_at_end() || line.Peek() == '#') return;
    Step step;
    step.place = {script_.file, number, static_cast<int>(text.find_first_not_of(" \t")) + 1};
    step.source = text.substr(static_cast<size_t>(step.place.column) - 1);
    step.statement = line.Word();
    const Statement* statement = FindStatement(step.statement);
    if (statement == nullptr) {
      return AddError(step.place, "Unknown statement \"" + step.statement + "\"." +
                                      DidYouMean(step.statement, StatementWords()));
    }
    statement->read(line, step);
    line.End();
    if (line.has_failed()) return AddError({script_.file, number, line.problem_column()}, line.problem());
    Add(std::move(step));
  }

 private:
  void Add(Step step) {
    if (step.role == StepRole::kTest) return Begin({step.place, step.text, {}});
    if (script_.tests.empty()) Begin({step.place, {}, {}});
    if (step.role == StepRole::kSpeaks) has_spoken_ = true;
    if (step.role == StepRole::kChecksAnswer && !has_spoken_) {
      return AddError(step.place,
                      "There is no answer to check yet. Add a say, send or inject before this in its test.");
    }
    script_.tests.back().steps.push_back(std::move(step));
  }

  void Begin(ScriptTest test) {
    has_spoken_ = false;
    script_.tests.push_back(std::move(test));
  }

  void AddError(const ScriptPlace& place, const std::string& message) {
    script_.errors.push_back({place, message});
  }

  VoiceScript& script_;
  SpokenLanguage language_;
  bool has_spoken_ = false;
};

}  // namespace

VoiceScript ParseVoiceScript(std::string_view text, const std::string& file, const SpokenLanguage& language) {
  VoiceScript script;
  script.file = file;
  ScriptReader reader(script, language);
  for (int number = 1; !text.empty(); ++number) {
    const size_t end = text.find('\n');
    std::string_view line = text.substr(0, end);
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    reader.ReadLine(line, number);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  }
  return script;
}

}  // namespace corvis::kit
