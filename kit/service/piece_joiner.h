// Puts an answer that came in "partial_result" pieces together again.
#ifndef CORVIS_KIT_SERVICE_PIECE_JOINER_H_
#define CORVIS_KIT_SERVICE_PIECE_JOINER_H_

#include <cstddef>
#include <string>

namespace corvis::kit {

// The pieces of one answer follow each other, and each says how many bytes the whole answer has.
class PieceJoiner {
 public:
  enum class State { kIncomplete, kComplete, kBroken };

  // What an application can make the joiner keep.
  static constexpr size_t kLargestAnswer = 16U << 20U;

  // Takes the next piece. kBroken when it doesn't fit what came so far (another total, or more bytes than the
  // total) or its total is 0; nothing changes then.
  State Add(const std::string& piece, size_t total);

  bool is_empty() const { return pieces_ == 0; }
  int pieces() const { return pieces_; }
  // Whether the answer is too large: its pieces are counted and not kept.
  bool is_too_large() const { return total_ > kLargestAnswer; }

  // The whole answer; the joiner is empty afterwards.
  std::string Take();
  void Clear() { Take(); }

 private:
  std::string data_;
  size_t size_ = 0;
  size_t total_ = 0;
  int pieces_ = 0;
};

}  // namespace corvis::kit

#endif  // CORVIS_KIT_SERVICE_PIECE_JOINER_H_
