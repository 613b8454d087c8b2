// Reassembles an answer from its "partial_result" pieces.
#ifndef CORVIS_KIT_SERVICE_PIECE_JOINER_H_
#define CORVIS_KIT_SERVICE_PIECE_JOINER_H_

#include <cstddef>
#include <string>

namespace corvis::kit {

// The pieces of an answer arrive in order, and each carries the size of the whole answer in bytes.
class PieceJoiner {
 public:
  enum class State { kIncomplete, kComplete, kBroken };

  // A limit on what an application can make the joiner store.
  static constexpr size_t kLargestAnswer = 16U << 20U;

  // Adds the next piece. Returns kBroken, and changes nothing, if it does not fit the pieces so far (a
  // different total, or more bytes than the total) or its total is 0.
  State Add(const std::string& piece, size_t total);

  bool is_empty() const { return pieces_ == 0; }
  int pieces() const { return pieces_; }
  // Whether the answer is too large. Its pieces are counted but not kept.
  bool is_too_large() const { return total_ > kLargestAnswer; }

  // Returns the whole answer and empties the joiner.
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
