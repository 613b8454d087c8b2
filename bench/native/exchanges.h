// The commands whose native work is measured, and the page's answers to them.
#ifndef CORVIS_BENCH_EXCHANGES_H_
#define CORVIS_BENCH_EXCHANGES_H_

#include <string>
#include <vector>

#include "native/page_host.h"
#include "nurvo_desktop/bundle_ptr.h"

namespace bench {

using nurvo::BundlePtr;
using Entries = std::vector<std::pair<std::string, std::string>>;

// Ends the program when the bundle can't be made.
BundlePtr MakeBundle(const Entries& entries);
std::string EncodeBundle(bundle* b);

// A command as it arrives, and the page's synchronous call that answers it.
struct Exchange {
  BundlePtr command;
  std::string answer_call;
};

// One of each kind: no data, a word, a search term, entries of the application's own, and an answer of some
// size.
std::vector<Exchange> MakeExchanges();

// Plays them all, `rounds` times.
void Play(const PageHost& host, InstanceHandle page, const std::vector<Exchange>& exchanges, int rounds);

}  // namespace bench

#endif  // CORVIS_BENCH_EXCHANGES_H_
