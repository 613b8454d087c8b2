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

  // Takes the next piece. kBroken when it doesn't fit what came so far (another total, or more bytes than the
  // total) or says a total that no answer can have; nothing changes then.
  State Add(const std::string& piece, size_t total);

  bool is_empty() const { return pieces_ == 0; }
  int pieces() const { return pieces_; }

  // The whole answer; the joiner is empty afterwards.
  std::string Take();
  void Clear() { Take(); }

 private:
  std::string data_;
  size_t total_ = 0;
  int pieces_ = 0;
};

}  // namespace corvis::kit

#endif  // CORVIS_KIT_SERVICE_PIECE_JOINER_H_
