// Counting the bytes of pieces.
#include "core/piece_joiner.h"

#include <utility>

namespace corvis::voice {

PieceJoiner::State PieceJoiner::Add(const std::string& piece, size_t total) {
  if (!is_empty() && total != total_) Clear();
  if (total == 0 || data_.size() + piece.size() > total) {
    Clear();
    return State::kBroken;
  }
  total_ = total;
  ++pieces_;
  data_ += piece;
  return data_.size() == total_ ? State::kComplete : State::kIncomplete;
}

std::string PieceJoiner::Take() {
  total_ = 0;
  pieces_ = 0;
  return std::exchange(data_, {});
}

}  // namespace corvis::voice
