// Measures the memory of a page's native object: creates pages that register, check the privileges and
// listen, and prints the growth of the resident set in bytes per page:
//   bench_instances LIBRARY.so PAGES
#include <cstdio>
#include <cstdlib>

#include "native/numbers.h"
#include "native/page_host.h"

namespace {

void MakePage(bench::PageHost& host) {
  const InstanceHandle page = host.NewListeningPage();
  host.Call(page, R"({"cmd":"VoiceInteractionHandler_getVersion","args":{}})");
  host.Call(page, R"({"cmd":"VoiceInteractionHandler_checkPrivileges","args":{}})");
}

}  // namespace

int main(int count, char** arguments) {
  const int pages = count == 3 ? std::atoi(arguments[2]) : 0;
  if (pages <= 0) {
    std::fputs("Usage: bench_instances LIBRARY.so PAGES\n", stderr);
    return 2;
  }
  bench::PageHost host(arguments[1]);
  MakePage(host);
  const long before = bench::ResidentBytes();
  for (int i = 0; i < pages; ++i) MakePage(host);
  std::printf("%ld\n", (bench::ResidentBytes() - before) / pages);
  return 0;
}
