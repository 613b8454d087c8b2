// Creates and plays the exchanges.
#include "native/exchanges.h"

#include <cstdio>
#include <cstdlib>

namespace bench {

namespace {

struct Sample {
  const char* action;
  const char* text;  // the command's data, unless it has entries
  Entries entries;
  std::string answer;  // escaped for the call's JSON
};

// The answer of a page with about forty items to a request for them.
std::string ContentContext() {
  std::string items;
  for (int i = 0; i < 40; ++i) {
    items += R"({\"id\":)" + std::to_string(i) + R"(,\"title\":\"Film )" + std::to_string(i) +
             R"(\",\"x\":40,\"y\":120,\"w\":320,\"h\":180},)";
  }
  items.pop_back();
  return R"({\"items\":[)" + items + "]}";
}

}  // namespace

BundlePtr MakeBundle(const Entries& entries) {
  BundlePtr b(bundle_create());
  for (const auto& [key, value] : entries) {
    if (!b || bundle_add(b.get(), key.c_str(), value.c_str()) != 0) {
      std::fputs("A bundle can't be made.\n", stderr);
      std::exit(1);
    }
  }
  return b;
}

std::string EncodeBundle(bundle* b) {
  bundle_raw* text = nullptr;
  int length = 0;
  if (bundle_encode(b, &text, &length) != 0) return "";
  std::string encoded(reinterpret_cast<const char*>(text), static_cast<size_t>(length));
  std::free(text);
  return encoded;
}

std::vector<Exchange> MakeExchanges() {
  const Sample samples[] = {
      {"ACTION_PLAY", "", {}, "success"},
      {"ACTION_NAVIGATION", "VOICE_NAVIGATION_NEXT", {}, "success"},
      {"ACTION_SEARCH",
       "",
       {{"raw", "find quiet films about the sea from 1998"},
        {"utterance", "films about the sea"},
        {"title", "the sea"},
        {"genre", "documentary"},
        {"content_type", "movie"},
        {"release_date_from", "1998"}},
       "success"},
      {"ACTION_CUSTOM", "", {{"kind", "bookmark"}, {"place", "00:41:10"}, {"name", "the storm"}}, "success"},
      {"ACTION_REQUEST_CONTENT_CONTEXT", "", {}, ContentContext()},
  };
  std::vector<Exchange> exchanges;
  for (const Sample& sample : samples) {
    const std::string data =
        sample.entries.empty() ? sample.text : EncodeBundle(MakeBundle(sample.entries).get());
    exchanges.push_back({MakeBundle({{"command", sample.action}, {"strData", data}}),
                         std::string(R"({"cmd":"Response","args":{"action":")") + sample.action +
                             R"(","response":")" + sample.answer + R"("}})"});
  }
  return exchanges;
}

void Play(const PageHost& host, InstanceHandle page, const std::vector<Exchange>& exchanges, int rounds) {
  for (int i = 0; i < rounds; ++i) {
    for (const Exchange& exchange : exchanges) {
      host.Deliver(exchange.command.get());
      host.Call(page, exchange.answer_call.c_str());
    }
  }
}

}  // namespace bench
