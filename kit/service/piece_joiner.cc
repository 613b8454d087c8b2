// Counting the bytes of pieces.
#include "service/piece_joiner.h"

#include <utility>

namespace corvis::kit {

namespace {
// What an application can make the service keep.
constexpr size_t kLargestAnswer = 16U << 20U;
}  // namespace

PieceJoiner::State PieceJoiner::Add(const std::string& piece, size_t total) {
  const bool is_other = !is_empty() && total != total_;
  if (total == 0 || total > kLargestAnswer || is_other || piece.size() > total - data_.size()) {
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

}  // namespace corvis::kit
