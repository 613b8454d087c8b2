// A page that has registered every kind of action and listens, on the platform's stand-in without a bus.
#ifndef CORVIS_FUZZ_PAGE_H_
#define CORVIS_FUZZ_PAGE_H_

#include <cstddef>
#include <cstdint>
#include <string>

#include "fake/fake_runtime.h"

struct FuzzPage {
  fake::Runtime& runtime;
  InstanceHandle page;
};

// The page of this process, made at the first call.
FuzzPage& TheFuzzPage();

// Ends the process, as a finding, unless `holds`.
void Require(bool holds, const char* what);

// Requires of a reply that it is one of the three kinds that there are.
void RequireReply(const std::string& reply);

inline std::string FuzzText(const uint8_t* data, size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

#endif  // CORVIS_FUZZ_PAGE_H_
