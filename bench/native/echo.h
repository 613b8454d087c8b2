// A bare echo over the bus: one one-way call in each direction, the minimum that a command and its answer
// need.
#ifndef CORVIS_BENCH_ECHO_H_
#define CORVIS_BENCH_ECHO_H_

namespace bench {

constexpr const char* kEchoPeer = "corvis.bench.EchoPeer";
constexpr const char* kEchoCaller = "corvis.bench.EchoCaller";
constexpr const char* kEchoPath = "/corvis/bench/echo";
constexpr const char* kEchoInterface = "corvis.bench.Echo";
constexpr const char* kEchoMember = "Deliver";
// The requested size of the reply's payload, and a payload.
constexpr const char* kEchoSignature = "uay";

}  // namespace bench

#endif  // CORVIS_BENCH_ECHO_H_
