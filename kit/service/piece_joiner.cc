// Joins pieces by counting their bytes.
#include "service/piece_joiner.h"

#include <utility>

namespace corvis::kit {

PieceJoiner::State PieceJoiner::Add(const std::string& piece, size_t total) {
  const bool is_other = !is_empty() && total != total_;
  if (total == 0 || is_other || piece.size() > total - size_) return State::kBroken;
  total_ = total;
  ++pieces_;
  size_ += piece.size();
  if (!is_too_large()) data_ += piece;
  return size_ == total_ ? State::kComplete : State::kIncomplete;
}

std::string PieceJoiner::Take() {
  size_ = 0;
  total_ = 0;
  pieces_ = 0;
  return std::exchange(data_, {});
}

}  // namespace corvis::kit
