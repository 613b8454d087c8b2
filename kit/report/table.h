// Tells a run as a table for people: what was said, which action it became, what the page did, the answer,
// the time.
#ifndef CORVIS_KIT_REPORT_TABLE_H_
#define CORVIS_KIT_REPORT_TABLE_H_

#include <cstdio>
#include <string>

#include "script/runner.h"

namespace corvis::kit {

class Narrator : public Reporter {
 public:
  // Writes to `out`, in colour where it is a terminal.
  explicit Narrator(std::FILE* out);

  void OnScript(const VoiceScript& script) override;
  void OnStep(const VoiceScript& script, const StepResult& result) override;
  void OnCoverage(const CoverageReport& report) override;
  void OnEnd(const RunTotals& totals, int status) override;

 private:
  // Prints the turn that is being told.
  void Flush();
  void TellTurn(const StepResult& result);
  void TellFailure(const VoiceScript& script, const StepResult& result);

  std::FILE* out_;
  bool is_colourful_;
  bool has_turn_ = false;
  bool is_ok_ = true;
  Turn turn_;
  std::string page_;
  std::string failure_;
};

// One turn as a line of the table; `page` is what the page shows of it.
std::string TurnLine(const Turn& turn, const std::string& page);
// The table's heading.
std::string TurnHeading();

// Cuts a text to some characters, with an ellipsis; line feeds become blanks.
std::string Shortened(const std::string& text, size_t characters);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_REPORT_TABLE_H_
