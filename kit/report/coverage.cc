// Compares the registered actions with the answered ones.
#include "report/coverage.h"

#include "language/actions.h"

namespace corvis::kit {

void Coverage::Take(const Event& event) {
  if (const auto* page = std::get_if<ActionsRegistered>(&event)) {
    registered_.insert(page->actions.begin(), page->actions.end());
  } else if (const auto* step = std::get_if<StepDone>(&event); step != nullptr && step->exchange) {
    Add(*step->exchange);
  }
}

void Coverage::Add(const Exchange& exchange) {
  if (!exchange.is_answered) return;
  answered_.insert(exchange.action);
  if (exchange.answer != "not_support") supported_.insert(exchange.action);
}

CoverageMeasured Coverage::Measure() const {
  CoverageMeasured measured;
  for (const ActionInfo& info : Actions()) {
    const std::string name(info.name);
    if (info.callback.empty()) continue;
    if (registered_.count(name) == 0) {
      measured.missing_callbacks.emplace_back(info.callback);
      continue;
    }
    const bool is_spoken = answered_.count(name) == 1;
    (is_spoken ? measured.spoken : measured.unspoken).push_back(name);
    if (is_spoken && supported_.count(name) == 0) measured.refused.push_back(name);
  }
  constexpr size_t kWhole = 100;
  if (!registered_.empty())
    measured.percent = static_cast<int>(kWhole * measured.spoken.size() / registered_.size());
  return measured;
}

}  // namespace corvis::kit
