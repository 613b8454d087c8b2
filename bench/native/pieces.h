// A long answer as the channel sends it, and as its pieces with the cuts known.
#ifndef CORVIS_BENCH_PIECES_H_
#define CORVIS_BENCH_PIECES_H_

#include <string>
#include <vector>

namespace bench {

constexpr const char* kServiceId = "com.kelvaro.tv.vif";
constexpr const char* kServicePort = "com.port.vif.voiceinteraction";

// Opens the channel, which then knows the version that every piece carries. Comes first.
void StartChannel();

// Through the channel, which searches for the cuts.
void SendWhole(const std::string& answer);

class Pieces {
 public:
  // Cuts as the channel does: in halves, at a multiple of twelve bytes, until a piece fits.
  explicit Pieces(const std::string& answer);
  // Makes and sends a message for each piece.
  void Send() const;

 private:
  void Cut(const std::string& text);

  std::string total_;
  std::vector<std::string> texts_;
};

}  // namespace bench

#endif  // CORVIS_BENCH_PIECES_H_
