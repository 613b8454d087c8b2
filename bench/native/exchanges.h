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

// Exits the program if the bundle can't be created.
BundlePtr MakeBundle(const Entries& entries);
std::string EncodeBundle(bundle* b);

// A command as received, and the page's synchronous call that answers it.
struct Exchange {
  BundlePtr command;
  std::string answer_call;
};

// One exchange of each kind: no data, a word, a search term, custom entries, and a large answer.
std::vector<Exchange> MakeExchanges();

// Plays all exchanges, `rounds` times.
void Play(const PageHost& host, InstanceHandle page, const std::vector<Exchange>& exchanges, int rounds);

}  // namespace bench

#endif  // CORVIS_BENCH_EXCHANGES_H_
