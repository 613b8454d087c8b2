// A long answer as the channel sends it, and as the same pieces with the split positions known.
#ifndef CORVIS_BENCH_PIECES_H_
#define CORVIS_BENCH_PIECES_H_

#include <string>
#include <vector>

namespace bench {

constexpr const char* kServiceId = "com.kelvaro.tv.vif";
constexpr const char* kServicePort = "com.port.vif.voiceinteraction";

// Opens the channel, which then knows the version for every piece. Call this first.
void StartChannel();

// Sends an answer through the channel, which searches for the split positions.
void SendWhole(const std::string& answer);

class Pieces {
 public:
  // Splits like the channel: in halves, at a multiple of twelve bytes, until a piece fits.
  explicit Pieces(const std::string& answer);
  // Creates and sends a message for each piece.
  void Send() const;

 private:
  void Cut(const std::string& text);

  std::string total_;
  std::vector<std::string> texts_;
};

}  // namespace bench

#endif  // CORVIS_BENCH_PIECES_H_
